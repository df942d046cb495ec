// Documents on their way from and to files, and the commands around them.

#include <thread>

#include "DocumentFiles.h"
#include "DocumentFixture.h"
#include "DocumentViewTextCommands.h"
#include "Exceptions.h"
#include "ProjectFile.h"
#include "TagIndex.h"

namespace {

using namespace zelk;
using namespace zelk::guicommand;
using namespace zelk::guicommand::documentview;
using namespace zelk::guicommand::documentviewtext;

constexpr const char* movieText = R"(<?xml version="1.0" encoding="UTF-8" ?>
<Movie SwfVersion="7" Width="550" Height="400" FrameRate="12">
    <!-- kept -->
    <SetBackgroundColor Color="33669900" />
    <ShowFrame />
</Movie>)";

#ifdef ZELK_HAVE_MINIZIP
constexpr const char* otherKind = "x.zelk";
#else
constexpr const char* otherKind = "x.xml";
#endif

class DocumentTest : public DocumentFixture {};

TEST_F(DocumentTest, FailuresAreReportedAndLoseNothing) {
    struct Case {
        const char* name;
        std::string text;
        Message message;
        uint32_t row;
        std::string reason = {}; ///< part of it
    };
    std::string colors;
    for (int i = 0; i < 16; ++i)
        colors += "<GradientRecord Ratio=\"1\" Color=\"1\"/>";
    const std::string gradient = "<FillStyles><GradientFillStyle Type=\"Linear\"><Matrix/><GradientRecords>" + colors +
                                 "</GradientRecords></GradientFillStyle></FillStyles>";
    const std::string shape = "<Movie>\n<ShowFrame/>\n<DefineShape ShapeId=\"1\"><Bounds/>" + gradient +
                              "<LineStyles/><Edges/></DefineShape></Movie>";
    const std::string noEntry = ": cannot be opened for writing: " + std::generic_category().message(ENOENT);
    const Case saves[] = {
        {"a.swf", "<Movie><ShowFrame></Movie>", message(MessageCode::badXml, "Error description: "), 1},
        {"a.doc", movieText, {"Unable to save this file.", "Message"}, 0, path("a.doc") + ": The name ends in "},
        {"none/a.xml", movieText, {"Unable to save this file.", "Message"}, 0, path("none/a.xml") + noEntry},
#ifdef ZELK_HAVE_MINIZIP
        {"none/a.zelk", movieText, {"Unable to save this file.", "Message"}, 0, path("none/a.zelk") + noEntry},
#endif
        {"a.swf",
         "<Movie\nFrameRate=\"fast\"/>",
         {"Incorrect value of attribute FrameRate", "Warning"},
         1,
         "(FrameRate: a number)"},
        {"a.swf",
         "<Movie>\n<RemoveObject Depth=\"65536\"/></Movie>",
         {"Incorrect value of attribute Depth", "Warning"},
         2,
         "RemoveObject: attribute Depth: \"65536\" is not a value that fits (Depth: 0 to 65535)"},
        {"a.swf",
         shape,
         {"A tag cannot be read or written.", "Warning"},
         3,
         "tag 1 (DefineShape): A gradient has more than 15 colors."},
    };
    libswf::writeTextFile(path("a.swf"), "old");
    for (const Case& c : saves) {
        user.failures.clear();
        Document document;
        document.isModified = true;
        document.kind = FileKind::project;
        view.atRow = 99;
        EXPECT_FALSE(save(document, c.text, c.name)) << c.text;
        EXPECT_TRUE(document.isModified);
        EXPECT_EQ(document.kind, FileKind::project);
        ASSERT_EQ(user.failures.size(), 1u) << c.text;
        EXPECT_EQ(user.failures[0].message.caption, c.message.caption);
        EXPECT_EQ(user.failures[0].message.text.substr(0, c.message.text.size()), c.message.text);
        EXPECT_NE(user.failures[0].reason.find(c.reason), std::string::npos) << user.failures[0].reason;
        EXPECT_EQ(view.atRow, c.row == 0 ? 99 : c.row) << c.text;
        EXPECT_EQ(libswf::readTextFile(path("a.swf")), "old");
        EXPECT_EQ(filesInFolder(), 1u) << "nothing half-written stays";
    }
    for (const char* name : {"missing.swf", "missing.xml", "missing.zelk", "a.swf", "a.doc", "noextension"}) {
        user.failures.clear();
        Document document;
        document.text = "before";
        EXPECT_FALSE(load(document, name));
        EXPECT_EQ(document.text, "before");
        ASSERT_EQ(user.failures.size(), 1u) << name;
        EXPECT_EQ(user.failures[0].message, (Message{"Unable to open " + path(name), "Message"}));
        EXPECT_EQ(user.failures[0].reason.find(path(name)), std::string::npos) << "said once";
        EXPECT_NE(user.failures[0].reason, "");
    }
}

// What is wrong, and by which message it is told, is the same for whoever looks.
TEST_F(DocumentTest, AWellFormedTextThatIsNoMovieIsToldAsThat) {
    const auto told = [this](ICommand& command, const std::string& what) {
        user.failures.clear();
        view.atRow = 99;
        EXPECT_FALSE(runCommand(session, command, &view)) << what;
        ASSERT_EQ(user.failures.size(), 1u) << what;
        EXPECT_EQ(user.failures[0].message, (Message{"The document has no Movie element.", "The XML is no movie."}))
            << what;
        EXPECT_EQ(view.atRow, 1u) << what;
    };
    for (const char* text : {"<Film/>", "", "<A><Movie/></A>"}) {
        view.content = text;
        Document document;
        document.fileName = path("a.swf");
        document.text = text;
        CheckXmlCmd check(session, view, document.warnings);
        MovieSettingsCmd settings(session, document, view);
        SaveToFileCmd save(session, document);
        told(check, "check");
        told(settings, "settings");
        told(save, "save");
        EXPECT_THROW(TagIndex{view.content}, NotMovieException) << "list";
    }
    constexpr const char* text = "<Movie>\n<ShowFrame/><DefineSprite>\n <Foo/></DefineSprite></Movie>";
    const Message noTag = {"Foo is no tag.", "The XML is no movie."};
    view.content = text;
    WarningList found;
    CheckXmlCmd check(session, view, found);
    EXPECT_FALSE(runCommand(session, check, &view));
    EXPECT_EQ(user.failures.back().message, noTag);
    EXPECT_EQ(view.atRow, 3u);
    user.failures.clear();
    Document document;
    ASSERT_TRUE(save(document, text, "a.swf")) << "the rest is written";
    ASSERT_EQ(user.failures.size(), 1u);
    EXPECT_EQ(user.failures[0].message, noTag);
    EXPECT_EQ(user.failures[0].row, 3u);
    EXPECT_FALSE(document.isModified);
}

TEST_F(DocumentTest, ABrokenTextOpensAndItsCheckGoesToTheError) {
    libswf::writeTextFile(path("b.xml"), "<Movie>\n  <A>\n</Movie>");
    Document document;
    ASSERT_TRUE(load(document, "b.xml"));
    LoadFromDocCmd(document, view).Execute();
    EXPECT_TRUE(document.text.empty()) << "a text is not kept twice";
    CheckXmlCmd check(session, view, document.warnings);
    EXPECT_FALSE(runCommand(session, check, &view));
    ASSERT_EQ(user.failures.size(), 1u);
    EXPECT_EQ(user.failures[0].message.caption, "The XML has incorrect format.");
    EXPECT_EQ(view.atRow, 3u);
    view.content = movieText;
    EXPECT_TRUE(runCommand(session, check, &view));
    EXPECT_EQ(user.messages, std::vector<Message>(1, {"The XML is correct.", "The XML is correct."}));
    EXPECT_FALSE(check.foundProblems());
    view.content = "<Movie FrameRate=\"twelve\">\n<ShowFrame/>\nlost<RemoveObject2 Depth=\"1\"/></Movie>";
    EXPECT_TRUE(runCommand(session, check, &view));
    EXPECT_TRUE(check.foundProblems());
    std::vector<std::pair<std::string, size_t>> found;
    for (WarningList::Entry entry : document.warnings.entries())
        found.emplace_back(document.warnings.at(entry).effect,
                           document.warnings.offset(entry) + document.warnings.at(entry).inElement);
    EXPECT_EQ(found,
              (std::vector<std::pair<std::string, size_t>>{
                  {"error", 0}, {"warning", view.content.find("lost")}, {"warning", view.content.rfind("<Rem")}}));
    EXPECT_EQ(user.messages.size(), 1u);
}

TEST_F(DocumentTest, ACancelledJobChangesNothing) {
    libswf::writeTextFile(path("c.swf"), "old");
    user.cancelsJobs = true;
    Document document;
    document.isModified = true;
    EXPECT_FALSE(save(document, movieText, "c.swf"));
    EXPECT_EQ(libswf::readTextFile(path("c.swf")), "old");
    EXPECT_TRUE(document.isModified);
    EXPECT_TRUE(user.failures.empty());
}

TEST_F(DocumentTest, ACheckReportsProgressAndSaysNothingOnceItIsCancelled) {
    std::string lines;
    for (int i = 0; i < 4000; ++i)
        lines += "<ShowFrame />\n";
    WarningList found;
    CheckXmlCmd check(session, view, found);
    view.content = "<Movie>" + lines + "</Movie>";
    EXPECT_TRUE(runCommand(session, check, &view));
    EXPECT_GE(user.position, 50);
    EXPECT_EQ(user.messages.size(), 1u);
    const std::string texts[] = {view.content, "<Movie>" + lines + "<b></Movie>", "<Movie><b></Movie>", ""};
    for (const std::string& text : texts) {
        view.content = text;
        for (bool isLate : {false, true}) {
            user.cancelsLate = isLate && text == texts[0]; // An error that was found is told.
            user.cancelsJobs = !user.cancelsLate;
            EXPECT_FALSE(runCommand(session, check, &view));
        }
    }
    EXPECT_EQ(user.messages.size(), 1u);
    EXPECT_TRUE(user.failures.empty());
}

TEST_F(DocumentTest, SaveAsRenamesOnlyWhenItWorks) {
    Document document = newDocument(session.names);
    const std::string text = document.text;
    user.saveNames = {std::nullopt, path("none/x.swf"), path(otherKind)};
    SaveAsFileCmd command(session, document);
    EXPECT_FALSE(runCommand(session, command));
    EXPECT_FALSE(runCommand(session, command));
    EXPECT_EQ(document.fileName, "Untitled.swf");
    EXPECT_FALSE(document.hasFile);
    document.text = text;
    EXPECT_TRUE(runCommand(session, command));
    EXPECT_EQ(user.proposal, "Untitled.swf");
    EXPECT_EQ(document.fileName, path(otherKind));
    EXPECT_EQ(document.kind, fileKind(otherKind));
    EXPECT_TRUE(document.hasFile);
    Document read;
    ASSERT_TRUE(load(read, otherKind));
    EXPECT_EQ(read.text, text);
    EXPECT_EQ(newDocument(session.names).fileName, "Untitled-1.swf");
    EXPECT_EQ(newDocument(session.names).fileName, "Untitled-2.swf");
}

TEST_F(DocumentTest, AFormIsChangedAndTheOriginalKept) {
    using namespace std::string_literals;
    const std::string movie = "FWS\x08\x28\0\0\0"
                              "\x80\0\0\0\0\0\0\0\0" // a stage in more bits than it takes
                              "\0\x0C\x01\0"
                              "\x0D\x03\x96\x09\0\x06\0\0\xF0\x3F\0\0\0\0\0" // DoAction: Push 1.0, End
                              "\x40\0\0\0"s;
    libswf::writeTextFile(path("a.swf"), movie);
    for (bool isFull : {false, true}) {
        session.fullForm = isFull;
        Document document;
        ASSERT_TRUE(load(document, "a.swf"));
        view.content = document.text;
        const auto isShown = [this](bool inFull) {
            return (view.content.find("<Movie Form=\"full\"") != std::string::npos) == inFull &&
                   (view.content.find("<Double Value=\"1\"") != std::string::npos) == inFull;
        };
        EXPECT_TRUE(isShown(isFull)) << view.content;
        const std::string before = view.content;
        ChangeFormCmd change(session, document, view, !isFull);
        ASSERT_TRUE(runCommand(session, change, &view));
        EXPECT_TRUE(isShown(!isFull)) << view.content;
        for (const std::string& text : {view.content, before}) { // as it is, and taken back
            CompileParams params;
            params.text = text;
            params.original = document.original;
            const libswf::SwfVector<uint8_t> bytes = compileDocument(params);
            EXPECT_EQ(std::string(bytes.begin(), bytes.end()), movie);
        }
        MovieSettings settings = movieSettings(view.content);
        EXPECT_EQ(settings.fullForm, !isFull);
        settings.fullForm = isFull;
        settings.frameRate = "24";
        user.settingsAnswers = {settings};
        MovieSettingsCmd command(session, document, view);
        EXPECT_TRUE(runCommand(session, command, &view));
        EXPECT_TRUE(isShown(isFull)) << view.content;
        EXPECT_EQ(movieSettings(view.content), settings);
    }
    Document document;
    view.content = "<Movie><ShowFrame Id='";
    ChangeFormCmd change(session, document, view, true);
    EXPECT_FALSE(runCommand(session, change, &view));
    EXPECT_EQ(view.content, "<Movie><ShowFrame Id='");
}

TEST_F(DocumentTest, MovieSettingsChangeTheirAttributesOnly) {
    Document document;
    const struct {
        const char* text;
        MovieSettings shown, answer;
        const char* expected;
    } rows[] = {
        {"<!-- <Movie> -->\n<Movie\tSwfVersion='8' x=\">\"  >\n</Movie>",
         {"8", "550", "400", "12", true},
         {"9", "550", "300", "12", false},
         "<!-- <Movie> -->\n<Movie\tSwfVersion='9' x=\">\" Height=\"300\" IsCompressed=\"false\"  >\n</Movie>"},
        {"<Movie/>",
         {"7", "550", "400", "12", true},
         {"5", "550", "400", "24.5", false}, // not compressed by its version
         "<Movie SwfVersion=\"5\" FrameRate=\"24.5\"/>"},
        {"<Movie Width=\"x\" IsCompressed=\"0\"/>",
         {"7", "x", "400", "12", false},
         {"7", "9", "400", "12", false},
         "<Movie Width=\"9\" IsCompressed=\"0\"/>"},
        {"<Movie Width=\"2\" Height=\"1\" MaxX=\"35\" MaxY=\"20\" MinX=\"-5\"/>",
         {"7", "2", "1", "12", true},
         {"7", "3", "1", "12", true},
         "<Movie Width=\"3\" Height=\"1\" MaxX=\"55\" MaxY=\"20\" MinX=\"-5\"/>"},
    };
    for (const auto& row : rows) {
        user.shownSettings.clear();
        user.settingsAnswers = {row.answer};
        view.content = row.text;
        MovieSettingsCmd command(session, document, view);
        EXPECT_TRUE(runCommand(session, command, &view)) << row.text;
        EXPECT_EQ(user.shownSettings, std::vector<MovieSettings>{row.shown}) << row.text;
        EXPECT_EQ(view.content, row.expected);
    }
    EXPECT_TRUE(user.failures.empty());

    const std::tuple<MovieSettings, const char*, const char*> wrong[] = {
        {{"256", "550", "400", "12", true}, "Incorrect value of attribute SwfVersion", "SwfVersion: 0 to 255"},
        {{"7", "-1", "400", "12", true}, "Incorrect value of attribute Width", "Width: 0 to 53687091"},
        {{"7", "550", "\"<", "12", true}, "Incorrect value of attribute Height", "Height: 0 to 53687091"},
        {{"7", "550", "400", "", true},
         "Incorrect value of attribute FrameRate",
         "Movie: attribute FrameRate: \"\" is not a value that fits (FrameRate: a number)"},
    };
    for (const auto& [answer, text, reason] : wrong) {
        user.failures.clear();
        user.shownSettings.clear();
        user.settingsAnswers = {answer}; // and then he thinks better of it
        view.content = "<Movie/>";
        MovieSettingsCmd command(session, document, view);
        EXPECT_FALSE(runCommand(session, command, &view));
        EXPECT_EQ(view.content, "<Movie/>");
        ASSERT_EQ(user.failures.size(), 1u);
        EXPECT_EQ(user.failures[0].message, (Message{text, "Warning"}));
        EXPECT_EQ(user.failures[0].reason, reason);
        ASSERT_EQ(user.shownSettings.size(), 2u);
        EXPECT_EQ(user.shownSettings[1], answer) << "what was typed is there again";
    }
    view.content = "<Movie></A>";
    MovieSettingsCmd command(session, document, view);
    EXPECT_FALSE(runCommand(session, command, &view));
    EXPECT_EQ(user.failures.back().message.caption, "The XML has incorrect format.");
}

TEST_F(DocumentTest, WithoutAPlayerTheUserIsTold) {
    ShowColorCmd none(session, "");
    EXPECT_FALSE(runCommand(session, none));
    EXPECT_TRUE(user.failures.empty());
    for (const auto& [color, text] :
         std::map<std::string, std::string>{{"ff0000ff", "Please install a Flash Player."},
                                            {"\"<&", "Incorrect value of attribute Color"},
                                            {"123456789", "Incorrect value of attribute Color"}}) {
        user.failures.clear();
        ShowColorCmd command(session, color);
        EXPECT_FALSE(runCommand(session, command));
        ASSERT_EQ(user.failures.size(), 1u);
        EXPECT_EQ(user.failures[0].message.text, text) << color;
    }
}

TEST_F(DocumentTest, AMovieLastsWhileItIsPlayed) {
    class Player : public IPlayer {
    public:
        std::string name;
        int width = 0, height = 0;
        Ended ended;
        bool isThere = true;
        void play(const PlayRequest& movie, Ended whenEnded) override {
            std::tie(name, width, height, ended) =
                std::tuple(movie.fileName, movie.width, movie.height, std::move(whenEnded));
            if (!isThere)
                throw NoPlayerException("why");
        }
    } player;
    session.player = &player;
    ShowColorCmd command(session, "ff0000ff");
    for (const bool isPlayed : {true, false}) {
        ASSERT_TRUE(runCommand(session, command));
        EXPECT_EQ(std::pair(player.width, player.height), std::pair(225, 200));
        LoadParams shown;
        shown.fileName = player.name;
        loadDocument(shown);
        EXPECT_EQ(shown.document.text,
                  "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<Movie SwfVersion=\"7\" Width=\"550\" "
                  "Height=\"400\" FrameRate=\"12\">\n    <SetBackgroundColor Color=\"ff000000\" />\n"
                  "    <ShowFrame />\n</Movie>");
        player.ended(isPlayed ? nullptr : std::make_exception_ptr(PlayerException("odd")));
        EXPECT_FALSE(fs::exists(player.name));
        EXPECT_EQ(user.failures.empty(), isPlayed);
    }
    player.isThere = false;
    EXPECT_FALSE(runCommand(session, command));
    EXPECT_FALSE(fs::exists(player.name));
    ASSERT_EQ(user.failures.size(), 2u);
    EXPECT_EQ(user.failures[0].message, message(MessageCode::cannotPlay));
    EXPECT_EQ(user.failures[1].message, message(MessageCode::noPlayer));
    EXPECT_EQ(user.failures[1].reason, "why");
}

} // namespace
