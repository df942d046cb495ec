// Runs every case file in both directions. ZELK_SHOW=1 prints what the code gives for each case that runs.
#include "Tests.h"

#include <iostream>

#include "SwfTagCodes.h"

using namespace libswf;

namespace {

constexpr std::string_view movieEnd = "\n</Movie>";

struct Record {
    uint16_t code = 0;
    Bytes body;

    bool operator==(const Record&) const = default;
};

Bytes fileOf(uint8_t version, const Bytes& records) { return joined(movieFile(version, records), Bytes{0, 0}); }

// The record of the last tag in a list, after checking that every tag takes the bytes that were measured.
Record writeLast(SwfTags& tags, const CaseFile& file, uint32_t tagsBefore, SwfWarnings* warnings) {
    SwfContext context;
    context.version = file.version;
    context.fullForm = file.fullForm;
    context.tags = &tags;
    context.keepRaw = file.keepRaw;
    const uint32_t total = tags.getSize(context);
    SwfOStream stream(total);
    stream.context = context;
    stream.context.warnings = warnings;
    tags.write(stream);
    EXPECT_EQ(stream.size(), total) << "the list takes other than the measured size";

    SwfIStream input(stream.data(), stream.size());
    SwfTagHeader header;
    Record last;
    uint32_t count = 0;
    for (; readTagHeader(input, input.size(), header) && header.code != 0; ++count) {
        last.code = header.code;
        last.body.resize(header.length);
        input.readBytes(header.length, last.body.data());
    }
    if (count == tagsBefore) // End tags are not written
        return {};
    EXPECT_EQ(count, tagsBefore + 1);
    if (!file.padded) {
        SwfTag& tag = tags.at(tags.count() - 1);
        SwfOStream alone(uint64_t(tag.size) + 64);
        alone.context = context;
        alone.context.tagType = tag.type;
        alone.context.tagSize = tag.size;
        tag.write(alone);
        alone.flushBits();
        EXPECT_EQ(alone.size(), tag.size + tag.headerSize()) << "the tag takes other than the measured size";
    }
    return last;
}

std::string allTexts(const SwfWarnings& warnings) {
    std::string text;
    for (const SwfWarning& warning : warnings.items())
        text += warning.text() + "\n";
    return text;
}

// Everything around one case's tag.
class Bench {
public:
    explicit Bench(const CaseFile& file) : _file(file) {
        load(_prologue, file.before, true, nullptr);
        _start = xml2swf::swfToXml(_prologue, {.keepRaw = true});
        _start.resize(_start.size() - movieEnd.size());
    }

    uint32_t tagsBefore() const { return _prologue.tags.count(); }

    void load(SwfMovieSafe& movie, const Bytes& records, bool keepRaw, SwfWarnings* warnings,
              bool readLater = false) const {
        movie.parse(fileOf(_file.version, records),
                    {.fullForm = _file.fullForm, .keepRaw = keepRaw, .warnings = warnings, .readLater = readLater});
    }
    // The movie of the case with a body of its own.
    void loadBody(SwfMovieSafe& movie, std::span<const uint8_t> body, bool keepRaw, SwfWarnings* warnings,
                  bool readLater = false) const {
        load(movie, joined(_file.before, recordOf(_file.tag, body)), keepRaw, warnings, readLater);
    }

    // Reads the body by the factory alone; no error is caught. Gives the tag and the bytes left over.
    std::pair<std::unique_ptr<SwfTag>, uint64_t> readAlone(std::span<const uint8_t> body, bool keepRaw) const {
        const Bytes data = joined(joined(_file.before, recordOf(_file.tag, body)), Bytes{0, 0});
        SwfIStream stream(data.data(), data.size());
        stream.context.version = _file.version;
        stream.context.fullForm = _file.fullForm;
        stream.context.keepRaw = keepRaw;
        stream.tagOptions(SwfTagCode::ImportAssets) = keepRaw && !_file.fullForm ? 1 : 0;
        SwfTags tags;
        stream.context.tags = &tags;
        tags.readUntil(stream, _file.before.size());
        SwfTagHeader header;
        readTagHeader(stream, data.size(), header);
        stream.context.spriteDepth = 1;
        stream.context.tagType = header.code;
        stream.context.tagSize = header.length;
        stream.setBodyEnd(header.body + header.length);
        auto tag = readTag(stream);
        return {std::move(tag), stream.bodyLeft()};
    }

    // The element of the movie's last tag, as if it stood alone.
    std::string elementText(SwfMovieSafe& movie, SwfWarnings* warnings, bool keepRaw) const {
        const std::string text = xml2swf::swfToXml(movie, {.keepRaw = keepRaw, .warnings = warnings});
        EXPECT_TRUE(text.starts_with(_start)) << text;
        return dedented(text.substr(_start.size(), text.size() - _start.size() - movieEnd.size()));
    }

    Record compile(const std::string& element, SwfWarnings* warnings) const {
        xml2swf::MovieTarget target;
        const std::string text = _start + "\n" + element + std::string(movieEnd);
        EXPECT_TRUE(xml2swf::xmlToSwf(text, target, {.keepRaw = _file.keepRaw, .warnings = warnings}));
        const Record record = writeLast(target.movie.tags, _file, tagsBefore(), warnings);
        xml2swf::MovieTarget toWrite;
        SwfWarnings bytesWarnings;
        xml2swf::xmlToSwf(text, toWrite, {.keepRaw = _file.keepRaw, .warnings = &bytesWarnings, .toWrite = true});
        EXPECT_TRUE(writeLast(toWrite.movie.tags, _file, tagsBefore(), &bytesWarnings) == record);
        if (warnings != nullptr) {
            EXPECT_EQ(allTexts(bytesWarnings), allTexts(*warnings));
        }
        return record;
    }

private:
    // Takes one level of indentation away, but nothing inside attribute values and CDATA sections.
    static std::string dedented(std::string_view text) {
        std::string result;
        bool inData = false, inQuotes = false;
        for (size_t i = 0; i < text.size(); ++i) {
            const std::string_view rest = text.substr(i);
            if (rest.starts_with(inData ? "]]>" : "<![CDATA["))
                inData = !inData;
            inQuotes = inQuotes != (!inData && text[i] == '"');
            result += text[i];
            if (text[i] == '\n' && !inData && !inQuotes && rest.substr(1).starts_with("    "))
                i += 4;
        }
        return result.substr(1); // the line feed in front
    }

    const CaseFile& _file;
    SwfMovieSafe _prologue;
    std::string _start;
};

bool showing() {
    static const bool show = std::getenv("ZELK_SHOW") != nullptr;
    return show;
}

// Each element on a line of its own, without the blanks between elements: a case may put several on one line.
std::string elementLines(std::string_view text) {
    std::string lines;
    for (size_t at = 0; at < text.size(); ++at) {
        lines += text[at];
        const size_t next = text.find_first_not_of(" \n", at + 1);
        if (text[at] == '>' && next != text.npos && text[next] == '<') {
            lines += '\n';
            at = next - 1;
        }
    }
    return lines;
}

std::string errorText(const std::exception& error) {
    std::string text = error.what();
    if (const auto* value = dynamic_cast<const xml2swf::XmlValueError*>(&error))
        text += " " + value->description();
    return text;
}

// The text of the exception that `act` throws; a failed test when it throws none.
template <class Act>
std::string thrownBy(Act act) {
    try {
        act();
    } catch (const std::exception& error) {
        return errorText(error);
    }
    ADD_FAILURE() << "nothing is thrown";
    return {};
}

class CaseTest : public testing::TestWithParam<std::filesystem::path> {
protected:
    void hold(const CaseFile& each);
    void check(const char* what, const Record& record, const Bytes& expected) {
        if (showing())
            std::cout << what << ": tag " << record.code << ", " << hexText(record.body) << "\n";
        EXPECT_EQ(hexDiff(expected, record.body), "") << what;
        if (!expected.empty() || !record.body.empty()) {
            EXPECT_EQ(record.code, file.writtenTag()) << what;
        }
    }

    void readBody() {
        SwfWarnings warnings;
        SwfMovieSafe movie;
        bench->loadBody(movie, *file.body, file.keepRaw, &warnings);
        ASSERT_EQ(movie.tags.count(), bench->tagsBefore() + 1) << "the tag is dropped: " << allTexts(warnings);
        const bool keptWhole = movie.tags.at(bench->tagsBefore())->isUnknown();
        showBody(movie, warnings); // first: writing recomputes derived fields
        check("body saved again", writeLast(movie.tags.tags(), file, bench->tagsBefore(), &warnings), file.saved());
        if (!file.resaved && !keptWhole) {
            EXPECT_EQ(bench->readAlone(*file.body, file.keepRaw).second, 0u) << "bytes of the body are not read";
        }
        note(warnings);
    }

    void showBody(SwfMovieSafe& movie, SwfWarnings& warnings) {
        if (file.xml) {
            const std::string text = bench->elementText(movie, &warnings, file.keepRaw);
            if (showing())
                std::cout << "xml:\n" << text << "\n";
            EXPECT_EQ(lineDiff(elementLines(*file.xml), elementLines(text)), "");
            SwfWarnings laterWarnings;
            SwfMovieSafe later;
            bench->loadBody(later, *file.body, file.keepRaw, &laterWarnings, true);
            EXPECT_EQ(bench->elementText(later, &laterWarnings, file.keepRaw), text);
            EXPECT_EQ(allTexts(laterWarnings), allTexts(warnings));
        } else if (file.fails == CaseFile::Fails::xml) {
            const std::string text = thrownBy([&] { bench->elementText(movie, &warnings, false); });
            EXPECT_NE(text.find(file.failure), text.npos) << text;
        }
    }

    // Where nothing may be lost the tag is bytes, which come back through XML.
    void keepWhole() {
        SwfWarnings warnings;
        SwfMovieSafe movie;
        bench->loadBody(movie, *file.body, true, &warnings);
        ASSERT_EQ(movie.tags.count(), bench->tagsBefore() + 1);
        const std::string text = bench->elementText(movie, &warnings, true);
        EXPECT_TRUE(text.starts_with("<Unknown TagType=\"" + std::to_string(file.tag) + "\"")) << text;
        EXPECT_NE(allTexts(warnings).find(*file.kept), std::string::npos) << allTexts(warnings);
        for (const Record& record :
             {writeLast(movie.tags.tags(), file, bench->tagsBefore(), nullptr), bench->compile(text, nullptr)}) {
            EXPECT_EQ(record.code, file.tag);
            EXPECT_EQ(hexDiff(*file.body, record.body), "") << "kept whole";
        }
    }

    void readXml() {
        SwfWarnings warnings;
        check("xml compiled", bench->compile(*file.xml, &warnings), file.compiled());
        note(warnings);
        for (const std::string& spelling : file.accepts)
            check(spelling.c_str(), bench->compile(spelling, nullptr), file.compiled());
    }

    // The name in "... DefineSprite > FrameCount: data ends here" is added where it is not the last one.
    static void addField(std::string& fields, const std::string& error) {
        const std::string path = error.substr(0, error.rfind(": ")), name = path.substr(path.rfind("> ") + 1);
        if (!fields.ends_with(name))
            fields += name;
    }

    // A body that is cut short is refused, or gives a tag that can be shown and written.
    void truncate() {
        std::string fields;
        const size_t step = 1 + file.body->size() / 512;
        for (size_t length = 0; length < file.body->size(); length += step) {
            const auto body = std::span<const uint8_t>(*file.body).first(length);
            for (bool keepRaw : {false, true}) {
                try {
                    bench->readAlone(body, keepRaw);
                } catch (const SwfException& error) {
                    addField(fields, error.what());
                } catch (const std::exception& error) {
                    ADD_FAILURE() << "cut to " << length << " bytes: " << error.what();
                }
                SwfMovieSafe movie;
                bench->loadBody(movie, body, keepRaw, nullptr);
                try {
                    movie.serialise(1);
                    xml2swf::swfToXml(movie, {.keepRaw = keepRaw});
                } catch (const SwfException&) {
                } catch (const std::exception& error) {
                    ADD_FAILURE() << "cut to " << length << " bytes, written: " << error.what();
                }
            }
        }
        if (showing())
            std::cout << "fields" << fields << "\n";
        if (file.fields) {
            EXPECT_EQ(" " + *file.fields, fields);
        }
    }

    void failToRead() {
        try {
            bench->readAlone(*file.body, false);
            ADD_FAILURE() << "the body is read";
        } catch (const SwfException& error) {
            EXPECT_EQ(std::to_string(error.code()), file.failure) << error.what();
        }
        SwfMovieSafe dropped, kept;
        bench->loadBody(dropped, *file.body, false, nullptr);
        EXPECT_EQ(dropped.tags.count(), bench->tagsBefore());
        bench->loadBody(kept, *file.body, true, nullptr);
        ASSERT_EQ(kept.tags.count(), bench->tagsBefore() + 1);
        check("kept raw", writeLast(kept.tags.tags(), file, bench->tagsBefore(), nullptr), *file.body);
    }

    void failToWrite() {
        try {
            bench->compile(*file.xml, nullptr);
            ADD_FAILURE() << "the xml is compiled";
        } catch (const SwfException& error) {
            EXPECT_EQ(std::to_string(error.code()), file.failure) << error.what();
        } catch (const std::logic_error& error) { // assertions and checked access
            EXPECT_EQ(error.what(), file.failure);
        }
    }

    void note(const SwfWarnings& warnings) { raised += allTexts(warnings); }

    // Every warning is expected, and every expected one is raised.
    void checkWarnings() {
        for (const std::string& expected : file.warns)
            EXPECT_NE(raised.find(expected), raised.npos) << "no warning contains \"" << expected << "\":\n" << raised;
        std::istringstream lines(raised);
        for (std::string line; std::getline(lines, line);)
            EXPECT_TRUE(std::any_of(file.warns.begin(), file.warns.end(),
                                    [&](const auto& expected) { return line.find(expected) != line.npos; }))
                << "unexpected warning: " << line;
    }

    CaseFile file;
    std::unique_ptr<Bench> bench;
    std::string raised;
};

TEST_P(CaseTest, Holds) {
    for (const CaseFile& each : parseCases(GetParam())) {
        char flags[32];
        std::snprintf(flags, sizeof flags, "%s 0x%x", each.flags == 0 ? "no flag" : "flag", each.flags);
        SCOPED_TRACE(GetParam().string() + ":" + std::to_string(each.row) + ", " + flags);
        hold(each);
    }
}

void CaseTest::hold(const CaseFile& each) {
    file = each;
    raised.clear();
    bench = std::make_unique<Bench>(file);
    switch (file.fails) {
    case CaseFile::Fails::read: failToRead(); return;
    case CaseFile::Fails::write: failToWrite(); return;
    case CaseFile::Fails::xml:
        if (file.xml) {
            const std::string text = thrownBy([&] { bench->compile(*file.xml, nullptr); });
            EXPECT_NE(text.find(file.failure), text.npos) << text;
            return;
        }
        [[fallthrough]];
    case CaseFile::Fails::never: break;
    }
    if (file.body) {
        if (!file.kept || !file.keepRaw) // else bytes alone can be kept
            readBody();
        truncate();
    }
    if (file.kept)
        keepWhole();
    if (file.xml)
        readXml();
    checkWarnings();
}

std::string caseName(const testing::TestParamInfo<std::filesystem::path>& info) {
    std::string name = std::filesystem::relative(info.param, casesDir).replace_extension().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Cases, CaseTest, testing::ValuesIn(findCases(casesDir)), caseName);

// What fuzz/seed.py runs: every case as a movie, in a file each.
TEST(CaseFiles, DISABLED_AsSeeds) {
    const std::string folder = std::getenv("ZELK_SEEDS");
    size_t count = 0;
    const auto write = [&](const char* extension, std::string_view content) {
        std::ofstream(folder + "/" + std::to_string(count++) + extension, std::ios::binary) << content;
    };
    for (const auto& path : findCases(casesDir)) {
        for (const CaseFile& each : parseCases(path)) {
            if (each.body) {
                const Bytes bytes = fileOf(each.version, joined(each.before, recordOf(each.tag, *each.body)));
                write(".swf", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
            }
            if (each.xml)
                write(".xml", std::string(each.fullForm ? "<Movie Form=\"full\"" : "<Movie") + " SwfVersion=\"" +
                                  std::to_string(each.version) + "\">" + *each.xml + "</Movie>");
        }
    }
}

TEST(TagTable, EveryTagHasACase) {
    std::set<std::string> shown;
    for (const auto& path : findCases(casesDir)) {
        for (const CaseFile& file : parseCases(path)) {
            if (file.fails == CaseFile::Fails::never && file.xml)
                shown.insert(file.xml->substr(1, file.xml->find_first_of(" />\n") - 1));
        }
    }
    EXPECT_TRUE(shown.count("Unknown"));
#define SWF_TAG(code, name) EXPECT_TRUE(shown.count(#name)) << "no case shows " #name;
#define SWF_FULL_TAG SWF_TAG
#include "SwfTags.def"
}

} // namespace
