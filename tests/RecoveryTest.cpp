// Copies of documents that were not saved, over runs that end in whatever way.
#include "DocumentFixture.h"
#include "Exceptions.h"
#include "RecoverySession.h"
#include "SmallDisk.h"

namespace {

using namespace zelk;

class RecoveryTest : public DocumentFixture {
protected:
    fs::path root() const { return folder / "recovery"; }
    static KeptDocument named(uint32_t id, const std::string& name) {
        KeptDocument document;
        document.id = id;
        document.fileName = name;
        return document;
    }
};

bool isThere(const fs::path& path) { return fs::exists(path); }

TEST_F(RecoveryTest, AnEndedSessionIsOfferedAndALiveOneIsNot) {
    auto live = RecoverySession::begin(root());
    auto crashed = RecoverySession::begin(root());
    auto closed = RecoverySession::begin(root());
    ASSERT_TRUE(live && crashed && closed);
    for (auto* session : {&live, &crashed, &closed})
        (*session)->keep(named(7, "a"), "text", nullptr);
    crashed.reset();
    closed->end();
    {
        const auto ended = RecoverySession::ended(root());
        ASSERT_EQ(ended.size(), 1u);
        EXPECT_EQ(ended[0]->documents().size(), 1u);
        EXPECT_EQ(ended[0]->text(7), "text");
        EXPECT_TRUE(RecoverySession::ended(root()).empty()) << "what one run offers, another does not";
    }
    EXPECT_EQ(RecoverySession::ended(root()).size(), 1u) << "it was put off";
    for (const auto& session : RecoverySession::ended(root())) {
        session->forget(7);
        EXPECT_TRUE(session->documents().empty());
        session->end();
    }
    live->forget(7);
    live->end();
    EXPECT_FALSE(isThere(root())) << "nothing is left behind";
}

TEST_F(RecoveryTest, EverythingOfADocumentComesBack) {
    Document document;
    document.fileName = "/odd\nname \\n й.swf";
    document.kind = FileKind::project;
    document.hasFile = true;
    document.fileStamp = FileStamp{12, 0xFFFFFFFFFFFFFFFF, -5, false};
    KeptDocument kept = KeptDocument::of(document);
    kept.id = 3;
    kept.caret = 1234567890123;
    const std::string text("<Movie>\r\n\xE9\r</Movie>");
    RecoverySession::begin(root())->keep(kept, text, nullptr);

    const auto ended = RecoverySession::ended(root());
    ASSERT_EQ(ended.size(), 1u);
    const std::vector<KeptDocument> documents = ended[0]->documents();
    ASSERT_EQ(documents.size(), 1u);
    EXPECT_EQ(documents[0].caret, kept.caret);
    EXPECT_EQ(documents[0].textSize, text.size());
    EXPECT_GT(documents[0].time, 1'600'000'000'000);
    LoadParams params;
    ended[0]->load(3, params);
    EXPECT_EQ(params.document.fileName, document.fileName);
    EXPECT_EQ(params.document.kind, document.kind);
    EXPECT_TRUE(params.document.hasFile);
    EXPECT_EQ(params.document.fileStamp, document.fileStamp);
    EXPECT_EQ(params.document.text, text);
    EXPECT_EQ(params.document.original, nullptr);

    auto next = RecoverySession::begin(root());
    next->keep(named(1, "other"), "x", nullptr);
    EXPECT_TRUE(next->adopt(9, *ended[0], 3));
    EXPECT_TRUE(ended[0]->documents().empty());
    EXPECT_EQ(next->documents().size(), 2u);
    EXPECT_EQ(next->text(9), text);
}

TEST_F(RecoveryTest, ATextWhoseCopyWasCutOffIsStillOffered) {
    auto session = RecoverySession::begin(root());
    session->keep(named(1, "a"), "first", nullptr);
    for (const auto& entry : fs::recursive_directory_iterator(root())) {
        if (entry.path().filename() == "info")
            fs::remove(entry.path());
    }
    ASSERT_EQ(session->documents().size(), 1u);
    EXPECT_EQ(session->text(1), "first");
    EXPECT_EQ(session->documents()[0].hasFile, false);
    session->keep(named(1, "a"), "second", nullptr);
    EXPECT_EQ(session->documents()[0].fileName, "a");
    EXPECT_EQ(session->text(1), "second");
}

// Bytes of the movie that a text was opened from, compiled with what a load gave and with what a recovery gave.
TEST_F(RecoveryTest, UneditedTagsKeepTheirBytes) {
    // ShowFrame with a long header, two bytes after End.
    libswf::writeFile(path("own.swf"),
                      std::vector<uint8_t>{'F',  'W',  'S', 7, 29, 0, 0, 0, 0x08, 0x00, 0x00, 0x0C, 1, 0, //
                                           0x43, 2,    1,   2, 3,                                         //
                                           0x7F, 0x00, 0,   0, 0,  0, 0, 0, 0xAA, 0xBB});
    auto session = RecoverySession::begin(root());
    for (const bool fullForm : {false, true}) {
        LoadParams loaded, recovered;
        loaded.fileName = path("own.swf");
        loaded.fullForm = fullForm;
        loadDocument(loaded);
        KeptDocument kept = KeptDocument::of(loaded.document);
        kept.original = fullForm ? 2 : 1;
        session->keep(kept, loaded.document.text, loaded.document.original.get());
        session->load(kept.id, recovered);
        ASSERT_NE(recovered.document.original, nullptr);
        EXPECT_EQ(recovered.document.original->wholeFile().span().size(),
                  loaded.document.original->wholeFile().span().size());
        for (const std::string& edit : {std::string(), std::string("<ShowFrame/>")}) {
            const auto compiled = [&](const Document& document) {
                CompileParams params;
                params.text = document.text;
                params.text.insert(params.text.rfind("</Movie>"), edit);
                params.original = document.original;
                const auto bytes = compileDocument(params);
                return std::vector<uint8_t>(bytes.data(), bytes.data() + bytes.size());
            };
            EXPECT_EQ(compiled(recovered.document), compiled(loaded.document)) << fullForm << edit;
        }
    }
}

TEST_F(RecoveryTest, AnOriginalThatCannotBeReadCostsItsBytesOnly) {
    libswf::writeFile(path("m.swf"), std::vector<uint8_t>{'F', 'W', 'S', 7, 16, 0, 0, 0, 0x08, 0, 0, 0x0C, 0, 0, 0, 0});
    LoadParams loaded, recovered;
    loaded.fileName = path("m.swf");
    loadDocument(loaded);
    auto session = RecoverySession::begin(root());
    KeptDocument kept = KeptDocument::of(loaded.document);
    kept.original = 1;
    session->keep(kept, "<Movie/>", loaded.document.original.get());
    for (const auto& entry : fs::recursive_directory_iterator(root())) {
        if (entry.path().extension() == ".swf")
            fs::resize_file(entry.path(), 3);
    }
    session->load(0, recovered);
    EXPECT_EQ(recovered.document.text, "<Movie/>");
    EXPECT_EQ(recovered.document.warnings.entries().size(), 1u);
}

TEST_F(RecoveryTest, CopiesTakeBoundedRoom) {
    auto session = RecoverySession::begin(root());
    session->keep(named(1, "a"), "text", nullptr);
    fs::create_directories(root() / "old" / "1");
    libswf::writeTextFile((root() / "old" / "1" / "text.xml").string(), "old");
    fs::resize_file(root() / "old" / "1" / "text.xml", RecoverySession::mostBytes - 40); // takes no room on the disk
    EXPECT_THROW(session->keep(named(2, "b"), std::string(50, 'x'), nullptr), FileSaveException);
    EXPECT_THROW(session->keep(named(1, "a"), std::string(50, 'x'), nullptr), FileSaveException);
    EXPECT_EQ(session->documents().size(), 1u);
    EXPECT_EQ(session->text(1), "text");
}

#ifdef __linux__

TEST_F(RecoveryTest, AFullDiskLeavesTheFormerCopy) {
    const bool isDone = onDisk(folder, "size=200k", [this] {
        auto session = RecoverySession::begin(root());
        ASSERT_NE(session, nullptr);
        session->keep(named(1, "a"), "former", nullptr);
        EXPECT_THROW(session->keep(named(1, "a"), std::string(300'000, 'x'), nullptr), FileSaveException);
        EXPECT_EQ(session->text(1), "former");
        session->keep(named(2, "b"), "small", nullptr);
        EXPECT_EQ(session->documents().size(), 2u);
    });
    if (!isDone)
        GTEST_SKIP() << "no disk can be mounted here";
}

TEST_F(RecoveryTest, WhereNothingCanBeKeptThereIsNoSession) {
    libswf::writeTextFile(path("recovery"), "a file");
    EXPECT_EQ(RecoverySession::begin(root()), nullptr);
    EXPECT_TRUE(RecoverySession::ended(root()).empty());
}

#endif

} // namespace
