// Files that documents come from and go to, and what other programs and disks do to them meanwhile.
#include <cerrno>

#include "DocumentFiles.h"
#include "DocumentFixture.h"
#include "Exceptions.h"
#include "ProjectFile.h"
#include "SmallDisk.h"

namespace {

using namespace zelk;
using namespace zelk::guicommand;
using namespace zelk::guicommand::documentview;
using libswf::readTextFile;
using libswf::writeTextFile;
using std::string_literals::operator""s;

// A movie of one FrameLabel.
std::string movieOf(const std::string& label) {
    std::string body = "\x08\x00\x00\x0C\x01\x00"s; // an empty stage, 12 frames per second, 1 frame
    body += static_cast<char>(0xC0 + label.size() + 1);
    body += "\x0A"s + label + "\0\x40\x00\x00\x00"s;
    return "FWS\x07"s + static_cast<char>(body.size() + 8) + "\0\0\0"s + body;
}

std::string textOf(const std::string& label) {
    return "<Movie SwfVersion=\"7\" Width=\"1\" Height=\"1\" FrameRate=\"1\"><FrameLabel Name=\"" + label +
           "\"/></Movie>";
}

std::string projectOf(const std::string& text) {
    const auto bytes = projectOfText(text, "");
    return {bytes.begin(), bytes.end()};
}

class SavedFilesTest : public DocumentFixture {
protected:
    // As the editor does it: the document keeps what it was loaded with.
    bool saveAgain(Document& document, const std::string& text) {
        document.text = text;
        document.isModified = true;
        SaveToFileCmd command(session, document);
        return runCommand(session, command, &view);
    }
    // Whatever the file holds, it is opened, edited and saved.
    void edit(const std::string& name, const std::string& label) {
        Document document;
        ASSERT_TRUE(load(document, name));
        ASSERT_TRUE(saveAgain(document, textOf(label)));
        EXPECT_FALSE(document.isModified);
    }
    void nextRun() {
        session.writtenFiles = {};
        session.writtenFiles.keepIn(folder / "state" / "written");
    }
    std::string content(const std::string& name) const {
        return fs::exists(path(name)) ? readTextFile(path(name)) : "(none)";
    }
};

TEST_F(SavedFilesTest, FilesOpenByWhatTheyHold) {
    const std::string xml = "<Movie/>";
    const struct {
        const char* name;
        std::string content;
        std::optional<FileKind> kind; // none: it does not open
        const char* proposed;         // the name to save it under
    } rows[] = {
        {"a.swf", movieOf("x"), FileKind::swf, "a.swf"},
        {"a.swf.bak", movieOf("x"), FileKind::swf, "a.swf"},
        {"a.swf.12.bak", movieOf("x"), FileKind::swf, "a.swf"},
        {"a.xml", movieOf("x"), FileKind::swf, "a.swf"},
        {"movie", movieOf("x"), FileKind::swf, "movie.swf"},
        {".v1.2/b", "\xEF\xBB\xBF \n" + xml, FileKind::xml, ".v1.2/b.xml"},
        {"b.swf", xml, FileKind::xml, "b.xml"},
        {"b.1.bak", "\xFF\xFE<\0M\0o\0v\0i\0e\0/\0>\0"s, FileKind::xml, "b.xml"},
        {"c.XML", "", FileKind::xml, "c.XML"},
        {"c.xml", "no XML yet", FileKind::xml, "c.xml"},
#ifdef ZELK_HAVE_MINIZIP
        {"d.bin", projectOf(xml), FileKind::project, "d.zelk"},
        {"d.xml.zip", projectOf(xml), FileKind::project, "d.zelk"},
#endif
        {"e.xml", "CWS\x07 and no movie", {}, ""},
        {"e.swf", "no movie", {}, ""},
        {"e.doc", "no movie", {}, ""},
        {"e", "", {}, ""},
        {"folder.swf/x", "", {}, ""},
    };
    for (const auto& row : rows) {
        fs::create_directories(fs::path(path(row.name)).parent_path());
        writeTextFile(path(row.name), row.content);
        Document document;
        ASSERT_EQ(load(document, row.name), row.kind.has_value()) << row.name;
        if (!row.kind)
            continue;
        EXPECT_EQ(document.kind, row.kind) << row.name;
        EXPECT_EQ(proposedName(document), path(row.proposed)) << row.name;
        EXPECT_EQ(hasFileOfItsKind(document), path(row.name) == path(row.proposed)) << row.name;
    }
    Document document;
    EXPECT_FALSE(load(document, "folder.swf"));
}

TEST_F(SavedFilesTest, TheFirstOriginalIsNeverLost) {
    const std::string first = movieOf("first"), foreign = movieOf("foreign");
    writeTextFile(path("m.swf"), first);
    nextRun();
    for (const char* label : {"a", "b"})
        edit("m.swf", label);
    EXPECT_EQ(content("m.swf.bak"), first);
    nextRun();
    edit("m.swf", "c");
    EXPECT_EQ(content("m.swf.bak"), first) << "what Zelk wrote in an earlier run is no original";
    EXPECT_EQ(content("m.swf.2.bak"), "(none)");

    writeTextFile(path("m.swf"), foreign);
    fs::create_directory(path("m.swf.2.bak"));
    edit("m.swf", "d");
    EXPECT_EQ(content("m.swf.bak"), first);
    EXPECT_EQ(content("m.swf.3.bak"), foreign) << "a name that is taken is passed over";
    writeTextFile(path("m.swf"), first);
    edit("m.swf", "e");
    EXPECT_EQ(content("m.swf.4.bak"), "(none)") << "it is kept already";

    const std::string own = content("m.swf");
    fs::remove_all(path("state"));
    nextRun();
    edit("m.swf", "f");
    EXPECT_EQ(content("m.swf.4.bak"), own) << "in doubt it is kept";
    EXPECT_EQ(content("m.swf.bak"), first);
}

TEST_F(SavedFilesTest, WhatIsNoLossGetsNoBackup) {
    nextRun();
    for (const char* name : {"new.swf", "other.swf", "new.xml"}) {
        Document document;
        ASSERT_TRUE(save(document, textOf(name), name));
        nextRun();
    }
    for (const char* name : {"new.swf", "other.swf", "new.xml"}) {
        edit(name, "b");
        EXPECT_EQ(content(name + ".bak"s), "(none)") << name;
    }
    writeTextFile(path("text.xml"), textOf("mine"));
    edit("text.xml", "edited");
    EXPECT_EQ(content("text.xml.bak"), "(none)") << "a text lives on in what is saved";
    writeTextFile(path("empty.swf"), "");
    Document document;
    ASSERT_TRUE(save(document, textOf("a"), "empty.swf"));
    EXPECT_EQ(content("empty.swf.bak"), "(none)");

    writeTextFile(path("other.xml"), "another text");
    user.saveNames = {path("other.xml")};
    document.text = textOf("b");
    SaveAsFileCmd saveAs(session, document);
    ASSERT_TRUE(runCommand(session, saveAs));
    EXPECT_EQ(content("other.xml.bak"), "another text");
    EXPECT_EQ(user.replaceQuestions, 0) << "the dialog for the name has asked";
}

TEST_F(SavedFilesTest, NoBackupIsKeptWhereNoneIsWanted) {
    for (const char* label : {"one", "two"}) {
        writeTextFile(path("m.swf"), movieOf(label));
        session.keepsBackups = label == "two"s;
        edit("m.swf", "edited");
        EXPECT_EQ(content("m.swf.bak"), session.keepsBackups ? movieOf(label) : "(none)");
    }
}

TEST_F(SavedFilesTest, WhatAnotherProgramWroteIsReplacedOnlyWhenTheUserSaysSo) {
    const std::tuple<const char*, std::string, std::string> files[] = {
        {"a.swf", movieOf("mine"), movieOf("else")},
        {"a.xml", textOf("mine"), textOf("else")},
#ifdef ZELK_HAVE_MINIZIP
        {"a.zelk", projectOf(textOf("mine")), projectOf(textOf("a longer one"))},
#endif
    };
    for (const auto& [name, before, foreign] : files) {
        for (const bool isOld : {true, false}) { // whether size and time tell
            user.replaceQuestions = 0;
            writeTextFile(path(name), before);
            if (isOld)
                fs::last_write_time(path(name), fs::file_time_type::clock::now() - std::chrono::hours(1));
            const auto time = fs::last_write_time(path(name));
            Document document;
            ASSERT_TRUE(load(document, name));

            fs::last_write_time(path(name), time + std::chrono::seconds(5));
            ASSERT_TRUE(saveAgain(document, textOf("one")));
            EXPECT_EQ(user.replaceQuestions, 0) << name << ": touch changes nothing";

            writeTextFile(path(name), foreign);
            user.replacesChanged = false;
            EXPECT_FALSE(saveAgain(document, textOf("two")));
            EXPECT_EQ(user.replaceQuestions, 1) << name;
            EXPECT_TRUE(user.failures.empty());
            EXPECT_TRUE(document.isModified);
            EXPECT_EQ(content(name), foreign);

            user.replacesChanged = true;
            ASSERT_TRUE(saveAgain(document, textOf("two")));
            EXPECT_NE(content(name), foreign);
            EXPECT_EQ(content(name + (name == "a.swf"s ? ".2.bak"s : ".bak")), foreign);
            ASSERT_TRUE(saveAgain(document, textOf("three")));
            EXPECT_EQ(user.replaceQuestions, 2) << name << ": it is Zelk's again";

            fs::remove(path(name));
            ASSERT_TRUE(saveAgain(document, textOf("four"))) << "a file that is gone is written anew";
            EXPECT_EQ(user.replaceQuestions, 2);
        }
    }
}

TEST_F(SavedFilesTest, ASecondVersionOfTheSameSizeAndTimeIsNoticed) {
    writeTextFile(path("a.xml"), textOf("mine"));
    const auto time = fs::last_write_time(path("a.xml"));
    Document document;
    ASSERT_TRUE(load(document, "a.xml"));
    writeTextFile(path("a.xml"), textOf("else"));
    fs::last_write_time(path("a.xml"), time); // as on a disk that tells times by two seconds
    EXPECT_FALSE(saveAgain(document, textOf("two")));
    EXPECT_EQ(user.replaceQuestions, 1);
}

// --- what stops a save -----------------------------------------------------------------------------------------------

#ifdef __linux__

size_t filesIn(const fs::path& folder) {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder), {}));
}

// A text that deflate does not make small.
std::string noise(size_t size) {
    std::string text;
    for (uint32_t i = 1; text.size() < size; i = i * 48271u % 2147483647u)
        text += std::to_string(i);
    return text;
}

TEST_F(SavedFilesTest, AFullDiskLosesNothingWhetherItStopsTheFileOrItsBackup) {
    const bool isDone = onDisk(folder, "size=100k", [this] {
        for (const char* name : {"f.xml", "f.zelk", "f.swf"}) {
            const std::string before = name == "f.xml"s   ? textOf("x")
                                       : name == "f.swf"s ? movieOf("x")
                                                          : projectOf(textOf("x"));
            writeTextFile(path(name), before);
            Document document;
            ASSERT_TRUE(load(document, name));
            user.failures.clear();
            EXPECT_FALSE(saveAgain(document, textOf(noise(300'000)))) << name;
            EXPECT_TRUE(document.isModified);
            EXPECT_EQ(content(name), before);
            ASSERT_EQ(user.failures.size(), 1u);
            EXPECT_EQ(user.failures[0].message.text, "Unable to save this file.");
            EXPECT_NE(user.failures[0].reason.find(std::strerror(ENOSPC)), std::string::npos)
                << user.failures[0].reason;
        }
        EXPECT_EQ(filesIn(folder), 4u) << "the files and one backup; nothing half-written stays";
        // What stands there takes most of the disk: there is room for a small movie, but not for the backup.
        for (const auto& entry : fs::directory_iterator(folder))
            fs::remove(entry);
        std::string big = "FWS\x07" + noise(60'000);
        writeTextFile(path("b.swf"), big);
        Document document;
        document.hasFile = true;
        user.failures.clear();
        EXPECT_FALSE(save(document, textOf("x"), "b.swf"));
        EXPECT_EQ(content("b.swf"), big);
        EXPECT_EQ(filesIn(folder), 1u);
        ASSERT_EQ(user.failures.size(), 1u);
        EXPECT_NE(user.failures[0].reason.find("No backup"), std::string::npos);
        EXPECT_NE(user.failures[0].reason.find(std::strerror(ENOSPC)), std::string::npos);
    });
    if (!isDone)
        GTEST_SKIP() << "no disk can be mounted here";
}

TEST_F(SavedFilesTest, AFolderThatTakesNothingLosesNothing) {
    const std::string before = movieOf("x");
    writeTextFile(path("r.swf"), before);
    Document document;
    ASSERT_TRUE(load(document, "r.swf"));
    const bool isDone = onDisk(folder, "size=100k", [&] {
        writeTextFile(path("r.swf"), before);
        ASSERT_EQ(mount("none", folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
        EXPECT_FALSE(saveAgain(document, textOf("y")));
        EXPECT_EQ(content("r.swf"), before);
        ASSERT_EQ(user.failures.size(), 1u);
        EXPECT_NE(user.failures[0].reason.find(std::strerror(EROFS)), std::string::npos) << user.failures[0].reason;
    });
    if (!isDone)
        GTEST_SKIP() << "no disk can be mounted here";
}

#endif

TEST_F(SavedFilesTest, WhereTheFileWasIsAFolder) {
    for (const char* name : {"d.swf", "d.xml"}) {
        writeTextFile(path(name), name == "d.swf"s ? movieOf("x") : textOf("x"));
        Document document;
        ASSERT_TRUE(load(document, name));
        fs::remove(path(name));
        fs::create_directory(path(name));
        writeTextFile(path(name) + "/inside", "kept");
        user.failures.clear();
        user.replacesChanged = true;
        EXPECT_FALSE(saveAgain(document, textOf("y")));
        EXPECT_TRUE(document.isModified);
        EXPECT_EQ(readTextFile(path(name) + "/inside"), "kept");
        ASSERT_EQ(user.failures.size(), 1u);
        EXPECT_NE(user.failures[0].reason.find(std::strerror(EISDIR)), std::string::npos) << user.failures[0].reason;
    }
}

} // namespace
