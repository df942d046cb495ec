// The quick reading of plain pieces of XML gives what the parser gives, wherever it does not leave a piece to it.
#include "Tests.h"

#include "XmlWindow.h"

using namespace xml2swf;

namespace {

using Form = XmlWindow::Form;

// All that a reader can see of a window. The declaration, which nobody asks for, is left out.
std::string shown(const XmlWindow& window) {
    std::ostringstream out;
    for (const XmlItem* item = window.items(); item != window.end(); ++item) {
        if (item->kind == XmlItem::Kind::other)
            continue;
        out << int(item->kind) << ' ' << window.after(item) - item << ' ' << item->text << ' ';
        if (item->kind == XmlItem::Kind::element || item->kind == XmlItem::Kind::cdata)
            out << window.offsetOf(item->text.data());
        for (uint32_t i = 0; i < item->attributeCount; ++i) {
            const XmlAttribute& attribute = window.attributes(*item)[i];
            out << ' ' << window.offsetOf(attribute.name.data()) << attribute.name << '=' << attribute.value;
        }
        out << '\n';
    }
    return out.str();
}

struct Counts {
    size_t plain = 0, all = 0;
};

void compare(const std::string& text, size_t start, size_t end, Form form, Counts& counts) {
    if (text.find('\0') != text.npos)
        return; // refused before
    ++counts.all;
    XmlWindow plain, parsed;
    if (!plain.readPlain(text, start, end, form)) {
        EXPECT_EQ(plain.items(), plain.end());
        return;
    }
    ++counts.plain;
    try {
        parsed.parse(text, start, end, form);
        ASSERT_EQ(shown(plain), shown(parsed)) << text.substr(start, end - start);
    } catch (const XmlSyntaxError& error) {
        ADD_FAILURE() << error.what() << " at " << error.place.offset << ": " << text.substr(start, end - start);
    }
}

void compareAll(const std::string& text, Counts& counts) {
    compare(text, 0, text.size(), Form::document, counts);
    compare(text, 0, text.size(), Form::content, counts);
    const size_t tag = text.find('<', text.find('<') + 1);
    if (tag != text.npos && text.find('>', tag) != text.npos)
        compare(text, tag, text.find('>', tag) + 1, Form::startTag, counts);
}

// Other spellings, and texts that are not well-formed.
std::string changed(std::string text, std::mt19937& random) {
    static const std::string pieces[] = {
        " ",          "\n",     "\t",    "\r\n",     "'",           "\"",          "&amp;",  "&#65;",    "&",
        "=",          "/",      ">",     "<",        "</a>",        "<a>",         "<a/>",   "x",        "<!-- > -->",
        "<![CDATA[",  "]]>",    "!",     "<? ?>",    " b=\"1\"",    "/>",          " b='1'", "b = \"\"", "&lt;",
        "&gt;&apos;", "&quot;", "&quo;", "\xC3\xA9", "-2147483648", "99999999999", ":",      "\x01"};
    auto below = [&](size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(random); };
    for (size_t changes = 1 + below(2); changes != 0 && !text.empty(); --changes) {
        const size_t at = below(text.size());
        switch (below(5)) {
        case 0: text.erase(at, 1 + below(3)); break;
        case 1: text.resize(at); break;
        case 2: text.insert(at, text.substr(below(text.size()), below(40))); break;
        case 3: // what the form turns on
            if (const size_t place = text.find_first_of("<>\"=/ ", at); place != text.npos)
                text.replace(place, below(2), pieces[below(std::size(pieces))]);
            break;
        default: text.insert(at, pieces[below(std::size(pieces))]);
        }
    }
    return text;
}

void compareChanged(const std::string& text, int times, std::mt19937& random, Counts& counts) {
    compareAll(text, counts);
    for (int i = 0; i < times; ++i)
        compareAll(changed(text, random), counts);
}

std::vector<std::filesystem::path> filesIn(const char* folder, const char* extension) {
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(folder)) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (entry.path().extension() == extension)
                files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string textOf(const std::filesystem::path& path) {
    const auto bytes = libswf::readFile(path.string());
    return {bytes.begin(), bytes.end()};
}

} // namespace

TEST(XmlPlain, GivesWhatTheParserGives) {
    std::mt19937 random(1);
    Counts counts;
    for (const auto& path : filesIn(casesDir, ".case")) // the whole file, and its lines: pieces of XML among others
        compareChanged(textOf(path), 2, random, counts);
    for (const auto& path : filesIn(casesDir, ".case")) {
        std::istringstream lines(textOf(path));
        for (std::string line; std::getline(lines, line);) {
            if (line.find('<') != line.npos)
                compareChanged(line, 100, random, counts);
        }
    }
    for (const auto& path : filesIn(samplesDir, ".xml"))
        compareChanged(textOf(path), 200, random, counts);
    EXPECT_GT(counts.plain, counts.all / 20); // or the test looks at nothing
}

// What is written takes the quick way: without this it would be quick no more, and no test would tell.
TEST(XmlPlain, TakesWhatIsWritten) {
    for (const char* text : {"<a/>", "<a />", "\n<a b=\"1\" c=\"-2\" />\n", "<a><b /></a>", "<a>\n<![CDATA[x]]>\n</a>",
                             "<a></a>", "", "<a b=\"&lt;&amp;x\" c=\"&quot;&apos;&gt;\"/>"}) {
        XmlWindow window;
        EXPECT_TRUE(window.readPlain(text, 0, std::string_view(text).size(), Form::content)) << text;
    }
    for (const char* text :
         {"<a b='1'/>", "<a  b=\"1\"/>", "<a b=\"&#60;\"/>", "<a b=\"&lt\"/>", "<a b=\"&LT;\"/>", "<a b=\"&lt;/>",
          "<a>x</a>", "<a><!-- --></a>", "<a", "<a></b>", "<a>", "</a>", "<a b/>", "<a b=\"1\"c=\"1\"/>"}) {
        XmlWindow window;
        EXPECT_FALSE(window.readPlain(text, 0, std::string_view(text).size(), Form::content)) << text;
    }
}
