// The tag list without windows: where tags stand, commands on them, their undo, the clipboard.

#include "CommandHistory.h"
#include "DocumentFiles.h"
#include "DocumentFixture.h"
#include "DocumentViewListCommands.h"
#include "Exceptions.h"
#include "TagCheck.h"
#include "TagEdits.h"
#include "TagText.h"

namespace {

using namespace zelk;
using namespace zelk::guicommand;
using namespace zelk::guicommand::documentviewlist;

// A text with a history, like that of the text view.
class HistoryText : public IEditableText {
public:
    std::string content;

    void setText(std::string bytes) override { content = std::move(bytes); }
    std::string_view text() override { return content; }
    void setSavePoint() override {}
    void gotoPlace(uint32_t, uint32_t) override {}
    uint32_t row() const override { return 1; }
    uint32_t rowCount() const override { return 1; }
    void replace(size_t, size_t, std::string_view) override { FAIL() << "list commands replace all at once"; }
    void replaceAll(std::span<const TextChange> changes) override {
        std::string next = content;
        for (size_t i = changes.size(); i-- > 0;) {
            const TextChange& c = changes[i];
            EXPECT_TRUE(c.start <= c.end && (i == 0 || changes[i - 1].end <= c.start)) << "ascending, apart";
            next.replace(c.start, c.end - c.start, c.text);
        }
        change(next);
    }
    /// As a user types in the text view.
    void change(std::string next) {
        _done.push_back(content);
        _undone.clear();
        content = std::move(next);
        ++_changes;
    }
    bool undo() override { return step(_done, _undone); }
    bool redo() override { return step(_undone, _done); }
    uint64_t changeCount() const override { return _changes; }

private:
    bool step(std::vector<std::string>& from, std::vector<std::string>& to) {
        if (from.empty())
            return false;
        to.push_back(content);
        content = from.back();
        from.pop_back();
        ++_changes;
        return true;
    }

    std::vector<std::string> _done, _undone;
    uint64_t _changes = 0;
};

class TestClipboard : public IClipboard {
public:
    std::optional<std::string> own;
    std::string plain;
    bool works = true;

    bool isFull = false;

    bool setTags(const std::string& elements, bool fullForm) override {
        isFull = fullForm;
        if (works)
            own = plain = elements;
        return works;
    }
    std::optional<std::string> tags() override { return own; }
    bool tagsAreFull() override { return isFull; }
    std::string plainText() override { return plain; }
};

class AnsweringEditor : public ITagEditor {
public:
    std::optional<std::string> answer;
    std::string asked;
    uint8_t version = 0;

    std::optional<std::string> editTag(const std::string& element, MovieLayout layout) override {
        asked = element;
        version = layout.version;
        return answer;
    }
};

class TagListTest : public testing::Test {
protected:
    template <class Command, class... Args>
    bool run(Args&&... args) {
        return history.execute(session, std::make_shared<Command>(tags, std::forward<Args>(args)...));
    }
    std::string names(uint32_t parent = TagIndex::movie) {
        const TagIndex& index = tags.tags();
        std::string result;
        for (uint32_t row = 0; row < index.childCount(parent); ++row) {
            const uint32_t tag = index.child(parent, row);
            result += (row == 0 ? "" : " ") + std::string(elementName(tags.element(tag)));
            if (index.childCount(tag) != 0)
                result += "(" + names(tag) + ")";
        }
        return result;
    }
    TagSelection shown() const { return dynamic_cast<const TagListCmd&>(*history.last()).shown(); }

    HistoryText text;
    TaggedText tags{text};
    TestClipboard clipboard;
    ScriptedUser user;
    Session session{user};
    CommandHistory history{text};
};

constexpr const char* movie = R"(<?xml version="1.0" encoding="UTF-8" ?>
<!-- <Movie><NotHere/></Movie> -->
<Movie SwfVersion="8" Width="550" Height="400" FrameRate="12">
    <!-- about A -->
    <A Id="1" />
    <B Text="a > b"/> <!-- about B -->
    <DefineSprite Id="3" FrameCount="1">
        <C>
            <Data><![CDATA[<D/>
    kept]]></Data>
        </C>
        <DefineSprite Id="4"/>
    </DefineSprite>
    <Group><DefineSprite><No/></DefineSprite></Group>

    <E /><F></F>
</Movie>
)";

TEST_F(TagListTest, TheIndexTellsWhereTagsStand) {
    text.content = movie;
    EXPECT_EQ(names(), "A B DefineSprite(C DefineSprite) Group E F");
    const TagIndex& index = tags.tags();
    for (uint32_t tag = 0; tag < index.count(); ++tag) {
        EXPECT_EQ(index.find(index.path(tag)), tag);
        EXPECT_EQ(index.at(index.start(tag)), tag);
    }
    EXPECT_EQ(index.at(text.content.find("kept")), index.find({2, 0})) << "the innermost tag";
    EXPECT_EQ(index.at(text.content.find("</DefineSprite>")), index.find({2}));
    EXPECT_EQ(index.at(text.content.find("about A")), TagIndex::movie);
    EXPECT_EQ(index.find({2, 5}), TagIndex::movie);

    const std::pair<const char*, uint32_t> broken[] = {{"<Movie>\n<A>\n</Movie>", 3}, {"<Movie>\n<A b=1/></Movie>", 2}};
    for (const auto& [bad, row] : broken) {
        try {
            TagIndex ignored(bad);
            ADD_FAILURE() << bad;
        } catch (const XmlException& error) {
            EXPECT_EQ(error.row, row) << bad;
        }
    }
}

// What is taken out or put in, and what the text is then. Lines are separated by "|".
struct EditCase {
    const char* what;
    TagSelection selection; ///< to delete; for a move, what is moved
    TagPath position;       ///< empty: delete. With an empty selection: paste "<X>|  <Y/>|</X>" and "<Z/>"
    const char *before, *after;
};

const EditCase editCases[] = {
    {"a tag takes its line", {{1}}, {}, "<Movie>|  <A/>|  <B/>|  <C/>|</Movie>", "<Movie>|  <A/>|  <C/>|</Movie>"},
    {"lines of its own elements too", {{0}}, {}, "<Movie>|<A>|  <B/>|</A>|</Movie>", "<Movie>|</Movie>"},
    {"the first of a line", {{0}}, {}, "<Movie>|  <A/> <B/>|</Movie>", "<Movie>|  <B/>|</Movie>"},
    {"the last of a line", {{1}}, {}, "<Movie>|  <A/> <B/>|</Movie>", "<Movie>|  <A/>|</Movie>"},
    {"a whole line of two", {{0}, {1}}, {}, "<Movie>|  <A/> <B/>|</Movie>", "<Movie>|</Movie>"},
    {"in one line", {{1}}, {}, "<Movie><A/><B/><C/></Movie>", "<Movie><A/><C/></Movie>"},
    {"comments stay",
     {{0}, {1}},
     {},
     "<Movie>|  <!-- a -->|  <A/>|  <!-- b --> <B/>|</Movie>",
     "<Movie>|  <!-- a -->|  <!-- b -->|</Movie>"},
    {"in a sprite, and not twice",
     {{0, 1}, {1}, {1, 0}, {7}},
     {},
     "<Movie>| <DefineSprite>|  <A/>|  <B/>| </DefineSprite>| <DefineSprite>|  <C/>| </DefineSprite>|</Movie>",
     "<Movie>| <DefineSprite>|  <A/>| </DefineSprite>|</Movie>"},
    {"put between",
     {},
     {1},
     "<Movie>|  <A/>|  <B/>|</Movie>",
     "<Movie>|  <A/>|  <X>|    <Y/>|  </X>|  <Z/>|  <B/>|</Movie>"},
    {"put first, before the comment of the next",
     {},
     {0},
     "<Movie>|\t<!-- a -->|\t<A/>|</Movie>",
     "<Movie>|\t<X>|\t  <Y/>|\t</X>|\t<Z/>|\t<!-- a -->|\t<A/>|</Movie>"},
    {"put last, behind the comment of the one before",
     {},
     {9},
     "<Movie>|  <A/> <!-- a -->|</Movie>",
     "<Movie>|  <A/> <!-- a -->|  <X>|    <Y/>|  </X>|  <Z/>|</Movie>"},
    {"put into one line", {}, {1}, "<Movie><A/><B/></Movie>", "<Movie><A/><X>|  <Y/>|</X><Z/><B/></Movie>"},
    {"put into nothing", {}, {0}, "<Movie a='1'/>", "<Movie a='1'>|    <X>|      <Y/>|    </X>|    <Z/>|</Movie>"},
    {"put into an empty sprite",
     {},
     {0, 0},
     "<Movie>|  <DefineSprite Id=\"1\" />|</Movie>",
     "<Movie>|  <DefineSprite Id=\"1\">|    <X>|      <Y/>|    </X>|    <Z/>|  </DefineSprite>|</Movie>"},
    {"moved down", {{0}}, {2}, "<Movie>| <A/>| <B/>| <C/>|</Movie>", "<Movie>| <B/>| <A/>| <C/>|</Movie>"},
    {"moved up together",
     {{1}, {3}},
     {0},
     "<Movie>| <A/>| <B/>| <C/>| <D/>|</Movie>",
     "<Movie>| <B/>| <D/>| <A/>| <C/>|</Movie>"},
    {"moved between themselves",
     {{0}, {2}},
     {1},
     "<Movie>| <A/>| <B/>| <C/>|</Movie>",
     "<Movie>| <A/>| <C/>| <B/>|</Movie>"},
    {"moved into a sprite behind it",
     {{0}},
     {1, 1},
     "<Movie>| <A>|  <D/>| </A>| <DefineSprite>|   <B/>| </DefineSprite>|</Movie>",
     "<Movie>| <DefineSprite>|   <B/>|   <A>|    <D/>|   </A>| </DefineSprite>|</Movie>"},
    {"moved out of a sprite",
     {{0, 0}},
     {1},
     "<Movie>| <DefineSprite>|   <B/>| </DefineSprite>|</Movie>",
     "<Movie>| <DefineSprite>| </DefineSprite>| <B/>|</Movie>"},
};

std::string lines(std::string text, const std::string& lineEnd, char mark = '|') {
    for (size_t at = 0; (at = text.find(mark, at)) != text.npos; at += lineEnd.size())
        text.replace(at, 1, lineEnd);
    return text;
}

TEST_F(TagListTest, EditsLeaveTheRestAndAreTakenBackAndRepeated) {
    for (const EditCase& c : editCases) {
        for (const char* lineEnd : {"\n", "\r\n"}) {
            const std::string before = lines(c.before, lineEnd), after = lines(c.after, lineEnd);
            const bool hasLines = before.find('\n') != before.npos;
            if (!hasLines && *lineEnd == '\r')
                continue; // There is nothing to learn the line end from.
            text.change(before);
            clipboard.own = lines("<X>|  <Y/>|</X>|<Z/>|", lineEnd);
            bool isDone = false;
            if (c.position.empty())
                isDone = run<DeleteCmd>(c.selection);
            else if (c.selection.empty())
                isDone = run<PasteCmd>(clipboard, c.position);
            else
                isDone = run<MoveCmd>(c.selection, c.position);
            EXPECT_TRUE(isDone) << c.what;
            EXPECT_EQ(text.content, after) << c.what;
            clipboard.own.reset();
            EXPECT_TRUE(history.undo());
            EXPECT_EQ(text.content, before) << c.what;
            EXPECT_TRUE(history.redo(session));
            EXPECT_EQ(text.content, after) << c.what << ": repeated with what it had the first time";
        }
    }
    EXPECT_TRUE(user.failures.empty());
}

// Any tags to any place, in texts written in any way.
TEST_F(TagListTest, AMoveKeepsEveryTagAndComment) {
    const std::string documents[] = {
        movie, lines(movie, "\r\n", '\n'),
        "<Movie><A/><DefineSprite><B/><!--b--></DefineSprite><C/><!--c\n--> <D/></Movie>",
        "<Movie>\n<A/> <!--a\n --> <B/>\n<DefineSprite/> <C/>\n\n <DefineSprite><D/>\n</DefineSprite></Movie>"};
    std::mt19937 random(7);
    const auto below = [&random](size_t count) { return static_cast<uint32_t>(random() % count); };
    int moves = 0;
    for (int i = 0; i < 2000; ++i) {
        const std::string& before = documents[i % std::size(documents)];
        text.change(before);
        const std::shared_ptr<const TagIndex> index = tags.sharedTags();
        TagSelection selection;
        std::vector<std::string> all, moved;
        std::vector<TagPath> parents = {{}};
        for (uint32_t tag = 0; tag < index->count(); ++tag) {
            all.push_back(loneElement(tags, tag).substr(0, 4));
            if (below(3) == 0)
                selection.push_back(index->path(tag));
            if (all.back() == "<Def")
                parents.push_back(index->path(tag));
        }
        for (uint32_t tag : tagsAt(*index, selection))
            moved.push_back(all[tag]);
        TagPath position = parents[below(parents.size())];
        position.push_back(below(index->childCount(index->find(position)) + 1));
        if (!run<MoveCmd>(selection, position)) {
            EXPECT_EQ(text.content, before);
            continue;
        }
        ++moves;
        std::vector<std::string> now, shownNow;
        for (uint32_t tag = 0; tag < tags.tags().count(); ++tag)
            now.push_back(loneElement(tags, tag).substr(0, 4));
        for (const TagPath& path : shown())
            shownNow.push_back(now[tags.tags().find(path)]);
        EXPECT_EQ(shownNow, moved) << text.content;
        std::ranges::sort(all);
        std::ranges::sort(now);
        EXPECT_EQ(now, all) << text.content;
        const auto comments = [](std::string_view in) { return std::ranges::count(in, '!'); };
        EXPECT_EQ(comments(text.content), comments(before)) << text.content;
        EXPECT_TRUE(history.undo());
        EXPECT_EQ(text.content, before);
    }
    EXPECT_GT(moves, 1000);
    EXPECT_TRUE(user.failures.empty());
}

TEST_F(TagListTest, WhatDoesNothingChangesNothingAndIsNotKept) {
    text.content = movie;
    EXPECT_FALSE(run<DeleteCmd>(TagSelection{}));
    EXPECT_FALSE(run<CutCmd>(clipboard, TagSelection{}));
    EXPECT_FALSE(CopyCmd(tags, clipboard, {}).Execute());
    for (const char* content : {"", "just text", "<a", "<A/> and text", "<A></B>", "</Movie><A/><Movie>", "<Movie/>"}) {
        clipboard.plain = content;
        EXPECT_FALSE(run<PasteCmd>(clipboard, TagPath{0})) << content;
    }
    EXPECT_FALSE(run<MoveCmd>(TagSelection{{1}}, TagPath{1}));
    EXPECT_FALSE(run<MoveCmd>(TagSelection{{1}}, TagPath{2}));
    EXPECT_FALSE(run<MoveCmd>(TagSelection{{2}}, TagPath{2, 1, 0})) << "into itself";
    AnsweringEditor editor;
    EXPECT_FALSE(run<EditSingleTagCmd>(editor, TagPath{0}));
    editor.answer = "<A Id=\"1\" />";
    EXPECT_FALSE(run<EditSingleTagCmd>(editor, TagPath{0}));
    EXPECT_EQ(text.content, movie);
    EXPECT_FALSE(history.undo());
}

TEST_F(TagListTest, CutTagsGoToTheClipboardAndBackToTheirPlaces) {
    text.content = movie;
    EXPECT_TRUE(run<CutCmd>(clipboard, TagSelection{{4}, {2, 0}}));
    EXPECT_EQ(names(), "A B DefineSprite(DefineSprite) Group F");
    const std::string cut = "<C>\n    <Data><![CDATA[<D/>\n    kept]]></Data>\n</C>\n<E />\n";
    EXPECT_EQ(clipboard.own, cut) << "in their order; payloads as they were";
    EXPECT_TRUE(history.undo());
    EXPECT_EQ(text.content, movie);
    EXPECT_EQ(shown(), (TagSelection{{2, 0}, {4}}));
    clipboard.own = "other";
    EXPECT_TRUE(history.redo(session));
    EXPECT_EQ(clipboard.own, cut) << "each time";

    clipboard.own.reset();
    clipboard.plain = "<!-- from elsewhere --> <P/>\n";
    EXPECT_TRUE(run<PasteCmd>(clipboard, TagPath{2, 1}));
    EXPECT_EQ(names(), "A B DefineSprite(DefineSprite P) Group F");
    EXPECT_EQ(shown(), (TagSelection{{2, 1}}));
    clipboard.works = false;
    EXPECT_TRUE(run<CutCmd>(clipboard, TagSelection{{0}})) << "undo brings it back";
    EXPECT_FALSE(CopyCmd(tags, clipboard, {{0}}).Execute());
}

// What is copied and put in keeps its bytes but for its indentation, whatever the lines around it end with.
TEST_F(TagListTest, BytesSurviveTheClipboard) {
    const std::string element = "<X a=\"\xE9 \r \n \r\n\">\r  <Y/> \r\n\n  <![CDATA[\xE9\r\n]]>\n</X>";
    const std::string indented = "<X a=\"\xE9 \r \n \r\n\">\r    <Y/> \r\n\n    <![CDATA[\xE9\r\n]]>\n  </X>";
    for (const char* lineEnd : {"\n", "\r\n", "\r"}) {
        const std::string before = lines("<Movie>|  <A/>|", lineEnd);
        text.change(before + "  " + indented + lineEnd + "</Movie>");
        EXPECT_TRUE(CopyCmd(tags, clipboard, {{1}}).Execute());
        EXPECT_EQ(clipboard.own, element + lineEnd);
        EXPECT_TRUE(run<PasteCmd>(clipboard, TagPath{9}));
        EXPECT_EQ(text.content, before + "  " + indented + lineEnd + "  " + indented + lineEnd + "</Movie>");
        EXPECT_TRUE(run<MoveCmd>(TagSelection{{2}}, TagPath{0}));
        EXPECT_EQ(text.content, lines("<Movie>|  ", lineEnd) + indented + lines("|  <A/>|  ", lineEnd) + indented +
                                    lineEnd + "</Movie>");
        // New ones, and what is typed into a tag of one line, end their lines as the text does.
        EXPECT_TRUE(run<InsertCmd>(std::vector<std::string>{"<N>\n</N>"}, TagPath{0}));
        EXPECT_TRUE(text.content.starts_with(lines("<Movie>|  <N>|  </N>|  <X", lineEnd)));
        AnsweringEditor editor;
        editor.answer = "<A>\n</A>";
        EXPECT_TRUE(run<EditSingleTagCmd>(editor, TagPath{2}));
        EXPECT_NE(text.content.find(lines("|  <A>|  </A>|", lineEnd)), std::string::npos);
    }
}

TEST_F(TagListTest, TagsGoBetweenFormsByWhatTheyMean) {
    const std::string full =
        "<Movie SwfVersion=\"9\" Form=\"full\">\n    <DoAction>\n        <Actions>\n            <Push>\n"
        "                <Double Value=\"1\" />\n            </Push>\n        </Actions>\n"
        "    </DoAction>\n    <EnableTelemetry />\n</Movie>";
    text.change(full);
    ASSERT_TRUE(CopyCmd(tags, clipboard, {{0}, {1}}).Execute());
    text.change("<Movie SwfVersion=\"9\">\n</Movie>");
    EXPECT_TRUE(run<PasteCmd>(clipboard, TagPath{0}));
    EXPECT_NE(text.text().find("<Double Value=\"3.03865e-319\" />"), std::string::npos) << text.text();
    EXPECT_NE(text.text().find("<Unknown TagType=\"93\">"), std::string::npos) << text.text();
    ASSERT_TRUE(CopyCmd(tags, clipboard, {{0}, {1}}).Execute());
    text.change("<Movie SwfVersion=\"9\" Form=\"full\">\n</Movie>");
    EXPECT_TRUE(run<PasteCmd>(clipboard, TagPath{0}));
    EXPECT_EQ(text.text(), full);
}

TEST_F(TagListTest, ARefusedCommandLeavesTextAndHistoryAlone) {
    text.content = movie;
    AnsweringEditor editor;
    editor.answer = "<A Id=\"2\"/>";
    EXPECT_TRUE(run<EditSingleTagCmd>(editor, TagPath{0}));
    const std::string edited = text.content;
    EXPECT_TRUE(history.undo());
    const uint64_t changes = text.changeCount();
    for (const char* refused : {"<A>", "<A b=1/>", "</Movie>"}) {
        editor.answer = refused;
        EXPECT_FALSE(run<EditSingleTagCmd>(editor, TagPath{0})) << refused;
        EXPECT_EQ(user.failures.back().message.caption, "The XML has incorrect format.") << refused;
    }
    EXPECT_EQ(text.content, movie);
    EXPECT_EQ(text.changeCount(), changes);
    EXPECT_TRUE(history.redo(session)) << "what could be repeated still can";
    EXPECT_EQ(text.content, edited);
    EXPECT_FALSE(history.redo(session));
}

TEST_F(TagListTest, OneHistoryServesBothViews) {
    text.content = movie;
    EXPECT_TRUE(run<DeleteCmd>(TagSelection{{0}}));
    EXPECT_TRUE(run<DeleteCmd>(TagSelection{{0}}));
    const std::string two = text.content;
    EXPECT_TRUE(history.undo());
    EXPECT_TRUE(history.undo());
    EXPECT_EQ(text.content, movie);
    EXPECT_TRUE(history.redo(session));
    EXPECT_TRUE(text.redo()) << "in the text view";
    EXPECT_EQ(text.content, two);
    text.change(two + "<!-- typed -->");
    EXPECT_TRUE(history.undo()) << "the step of the text view";
    EXPECT_EQ(text.content, two);
    EXPECT_EQ(history.last(), nullptr);
    EXPECT_TRUE(history.undo());
    EXPECT_TRUE(history.undo());
    EXPECT_EQ(text.content, movie);
    EXPECT_FALSE(history.undo());
    EXPECT_TRUE(history.redo(session));
    EXPECT_EQ(names(), "B DefineSprite(C DefineSprite) Group E F");
}

TEST_F(TagListTest, ASingleTagIsEditedInItsPlace) {
    text.content = movie;
    AnsweringEditor editor;
    editor.answer = "\n<C>\n    <New/>\n</C> <!-- why -->\n";
    EXPECT_TRUE(run<EditSingleTagCmd>(editor, TagPath{2, 0}));
    EXPECT_EQ(editor.asked, "<C>\n    <Data><![CDATA[<D/>\n    kept]]></Data>\n</C>");
    EXPECT_EQ(editor.version, 8);
    EXPECT_NE(text.content.find("\n        <C>\n            <New/>\n        </C> <!-- why -->\n"), std::string::npos);
    EXPECT_TRUE(history.undo());
    EXPECT_EQ(text.content, movie);

    libswf::SwfWarnings warnings;
    checkTag("<!-- why --> <SetBackgroundColor Color=\"ff\" />", 7, warnings);
    EXPECT_TRUE(warnings.empty());
    checkTag("\n<ShowFrame Nothing=\"1\" />", 7, warnings);
    ASSERT_EQ(warnings.total(), 1u);
    EXPECT_EQ(warnings.items().front().row, 2u);
    checkTag("<ShowFrame Nothing=\"1\" />", 7, warnings);
    EXPECT_EQ(warnings.items().back().row, 1u);
    struct Bad {
        const char* text;
        MessageCode code;
        uint32_t row;
    };
    for (const Bad& bad : {Bad{"", MessageCode::notMovie, 1},
                           {"<ShowFrame /><ShowFrame />", MessageCode::notMovie, 1},
                           {"<ShowFrame />\n and text", MessageCode::notMovie, 2},
                           {"<Nothing />", MessageCode::notMovie, 1},
                           {"\n<ShowFrame>", MessageCode::badXml, 2},
                           {"<!-- -->\n<RemoveObject Depth=\"x\" />", MessageCode::badValue, 2},
                           {"\n\n<DefineBinaryData><Data>%</Data></DefineBinaryData>", MessageCode::badBase64, 3}}) {
        try {
            checkTag(bad.text, 7, warnings);
            ADD_FAILURE() << bad.text;
        } catch (...) {
            const Failure failure = describeFailure();
            EXPECT_EQ(failure.message.caption, message(bad.code).caption) << bad.text;
            EXPECT_EQ(failure.row, bad.row) << bad.text;
        }
    }
}

} // namespace
