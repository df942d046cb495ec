// Warnings while the text is edited: they stay at their elements, as long as they are true.
#include "Tests.h"

#include "DocumentWarnings.h"

namespace {

using namespace zelk;
using libswf::SwfWarning;

// A text whose edits the list hears of, with one step of undo.
class EditedText {
public:
    explicit EditedText(std::string text, WarningList& list) : _text(std::move(text)), _list(list) {}

    void insert(size_t at, const std::string& bytes) {
        _list.willInsert(at, bytes.size());
        _text.insert(at, bytes);
    }
    void erase(size_t start, size_t end) {
        _list.willDelete(start, end, reader());
        _text.erase(start, end - start);
    }
    void replace(const std::string& part, const std::string& bytes) {
        const size_t start = _text.find(part);
        erase(start, start + part.size());
        insert(start, bytes);
    }
    void settle() { _list.settle(reader()); }
    const std::string& text() const { return _text; }
    // The text from the element of a warning on; empty when it has none.
    std::string at(WarningList::Entry entry) const {
        const size_t offset = _list.offset(entry);
        return offset == DocumentWarning::nowhere ? std::string() : _text.substr(offset);
    }

private:
    WarningList::Reader reader() {
        return [this](size_t start, size_t end) { return _text.substr(start, end - start); };
    }

    std::string _text;
    WarningList& _list;
};

std::string element(size_t number) { return "<E N=\"" + std::to_string(number) + "\" />"; }

SwfWarning warning(const std::string& reason, SwfWarning::Kind kind = SwfWarning::Kind::keptRaw) {
    SwfWarning result;
    result.kind = kind;
    result.reason = reason;
    return result;
}

// Given on load: one for each element E of the text, in their order, and those behind for the movie.
WarningList listOfLoad(const std::string& text, const std::vector<std::string>& reasons) {
    std::vector<xml2swf::TagText> tags;
    for (size_t start = text.find("<E "); start != text.npos; start = text.find("<E ", start + 1))
        tags.push_back({start, text.find("/>", start) + 2, nullptr});
    libswf::SwfWarnings warnings;
    for (size_t i = 0; i < reasons.size(); ++i) {
        SwfWarning item = warning(reasons[i]);
        item.path = i < tags.size() ? std::to_string(i) : "";
        warnings.add(item);
    }
    WarningList list;
    list.loaded(warningsOfLoad(warnings, text, tags));
    return list;
}

std::vector<std::string> reasons(const WarningList& list) {
    std::vector<std::string> result;
    for (WarningList::Entry entry : list.entries())
        result.push_back(list.at(entry).warning.reason);
    return result;
}

// Elements are cut, moved, copied apart and brought back; what is told of each is where its element is.
TEST(WarningListTest, WarningsFollowTheirElementsThroughRandomEdits) {
    constexpr size_t count = 12;
    std::string text = "<Movie>\n";
    std::vector<std::string> given;
    for (size_t i = 0; i < count; ++i) {
        text += element(i) + "\n";
        given.push_back(std::to_string(i));
    }
    WarningList list = listOfLoad(text + "</Movie>", given);
    EditedText edited(text + "</Movie>", list);
    std::mt19937 random(7);
    const auto upTo = [&random](size_t end) { return random() % end; };
    struct Cut {
        size_t start;
        std::string bytes;
    };
    std::vector<Cut> cuts;
    for (int step = 0; step < 3000; ++step) {
        const size_t a = edited.text().find('\n', upTo(edited.text().size()));
        const size_t b = a == std::string::npos ? a : edited.text().find('\n', a + 1 + upTo(60));
        if (b == std::string::npos)
            continue;
        switch (upTo(5)) {
        case 0: edited.insert(a + 1, upTo(2) == 0 ? "  " : "<!-- new -->\n"); break;
        case 1: // cut
            cuts.push_back({a + 1, edited.text().substr(a + 1, b - a)});
            edited.erase(a + 1, b + 1);
            break;
        case 2: // moved in one step, as the tag list does
            if (const std::string bytes = edited.text().substr(a + 1, b - a); !bytes.empty()) {
                edited.erase(a + 1, b + 1);
                edited.insert(edited.text().find('\n') + 1, bytes);
            }
            break;
        default: // put back, be it there or elsewhere
            if (!cuts.empty()) {
                const size_t place = edited.text().find('\n') + 1;
                edited.insert(upTo(2) == 0 && cuts.back().start == a + 1 ? a + 1 : place, cuts.back().bytes);
                cuts.pop_back();
            }
        }
        edited.settle();
        size_t there = 0;
        std::vector<size_t> offsets;
        for (WarningList::Entry entry : list.entries()) {
            const std::string expected = element(std::stoul(list.at(entry).warning.reason));
            ASSERT_EQ(edited.at(entry).substr(0, expected.size()), expected) << "step " << step << "\n"
                                                                             << edited.text();
            offsets.push_back(list.offset(entry));
        }
        EXPECT_TRUE(std::ranges::is_sorted(offsets)) << "the order of the text";
        for (size_t i = 0; i < count; ++i)
            there += edited.text().find(element(i)) != std::string::npos ? 1 : 0;
        ASSERT_EQ(offsets.size(), there) << "step " << step << "\n" << edited.text();
    }
}

TEST(WarningListTest, ElementsAreFoundInWhicheverPieceOfTheTextTheyComeBack) {
    const std::string two = element(1) + element(1), text = "<Movie>\n" + two + "\n</Movie>";
    for (const size_t before : {0u, 0x3FFF7u, 0x3FFFFu, 0x40000u, 0x90000u}) {
        WarningList list = listOfLoad(text, {"one", "two"});
        EditedText edited(text, list);
        edited.replace(two, "\n");
        edited.insert(7, std::string(before, ' ') + two);
        edited.settle();
        ASSERT_EQ(list.entries().size(), 2u) << before;
        EXPECT_EQ(edited.at(list.entries()[0]), two + "\n\n\n</Movie>");
        EXPECT_EQ(edited.at(list.entries()[1]), element(1) + "\n\n\n</Movie>");
    }
}

TEST(WarningListTest, ThoseOfLoadStayAsLongAsTheirBytesDo) {
    const std::string text = "<Movie>\n" + element(1) + "\n" + element(2) + "\n</Movie>";
    const auto fresh = [&] { return listOfLoad(text, {"one", "two", "movie"}); };
    using Reasons = std::vector<std::string>;
    {
        WarningList list = fresh();
        EditedText edited(text, list);
        EXPECT_EQ(reasons(list), (Reasons{"one", "two", "movie"}));
        edited.insert(edited.text().find('\n') + 1, "<New />\n<New />\n");
        edited.replace("N=\"2\"", "N=\"3\"");
        edited.settle();
        EXPECT_EQ(reasons(list).size(), 3u) << "nothing is written yet";
        list.savedAsMovie(edited.text(), true);
        EXPECT_EQ(reasons(list), (Reasons{"one", "movie"})) << "two was compiled from its text";
    }
    WarningList list = fresh();
    EditedText edited(text, list);
    list.savedAsMovie(text, false);
    EXPECT_EQ(reasons(list), Reasons{}) << "without an original all was";

    libswf::SwfWarnings compiled;
    SwfWarning item = warning("cut", SwfWarning::Kind::cut);
    item.offset = text.find("N=\"2\"");
    item.row = 3;
    compiled.add(item);
    list = fresh();
    list.compiled(warningsOfCompile(compiled, text));
    EXPECT_EQ(reasons(list), (Reasons{"one", "two", "cut", "movie"})) << "the text's order, whatever they are of";
    EXPECT_EQ(list.at(list.entries()[2]).inElement, 3u);
    list.compiled({});
    EXPECT_EQ(reasons(list), (Reasons{"one", "two", "movie"})) << "the next save tells anew";
}

TEST(WarningListTest, LikeOnesAreGrouped) {
    struct Case {
        std::vector<std::string> reasons; // one for each element
        std::vector<std::string> titles;
    };
    const Case cases[] = {
        {{"NUL bytes at the end of the font name", "NUL bytes at the end of the font name"},
         {"NUL bytes at the end of the font name, 2 tags"}},
        {{"3 bytes are left over", "other", "12 bytes are left over"}, {"bytes are left over, 2 tags", "other"}},
        {{"RGB24 is wrong", "RGB32 is wrong"}, {"RGB24 is wrong", "RGB32 is wrong"}}, // a name, no number
        {{"lost (code 11)", "lost (code 12)"}, {"lost (code 11)", "lost (code 12)"}},
        {{"offset 0x12: bad", "offset 0x20: bad"}, {"bad, 2 tags"}},
    };
    for (const Case& c : cases) {
        std::string text = "<Movie>";
        for (size_t i = 0; i < c.reasons.size(); ++i)
            text += element(i);
        const WarningList list = listOfLoad(text, c.reasons);
        std::vector<std::string> titles;
        for (const WarningGroup& group : grouped(list, list.entries()))
            titles.push_back(group.title);
        EXPECT_EQ(titles, c.titles) << c.reasons.front();
    }
}

} // namespace
