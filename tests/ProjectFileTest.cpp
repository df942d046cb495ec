// Project files: which entry of an archive is the text, what is refused, and what is left on the disk.
#include "Tests.h"

#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <ctime>

#include "Exceptions.h"
#include "FileKind.h"
#include "ProjectFile.h"
#include "SmallDisk.h"

namespace {

// An entry of an archive made by hand. What it states about itself may be wrong.
struct Entry {
    std::string name, content;
    uint16_t flags = 0;
    uint16_t method = 0;
    std::optional<uint32_t> crc = {}, size = {}; // of the text; as they should be when missing
    std::string packed = {};                     // the bytes that are stored, when they are not the content
};

uint32_t number(const Bytes& bytes, size_t at, size_t size) {
    uint32_t value = 0;
    for (size_t i = size; i > 0; --i)
        value = value << 8 | bytes.at(at + i - 1);
    return value;
}

Bytes archiveOf(const std::vector<Entry>& entries) {
    std::string data, directory;
    for (const Entry& e : entries) {
        const std::string& stored = e.packed.empty() ? e.content : e.packed;
        const auto* bytes = reinterpret_cast<const Bytef*>(e.content.data());
        const uint32_t crc = e.crc.value_or(crc32(0, bytes, static_cast<uInt>(e.content.size())));
        const std::string facts = little(20, 2) + little(e.flags, 2) + little(e.method, 2) + little(0, 4) +
                                  little(crc, 4) + little(stored.size(), 4) +
                                  little(e.size.value_or(static_cast<uint32_t>(e.content.size())), 4) +
                                  little(e.name.size(), 2) + little(0, 2);
        directory += "PK\1\2" + little(20, 2) + facts + std::string(10, '\0') + little(data.size(), 4) + e.name;
        data += "PK\3\4" + facts + e.name + stored;
    }
    const std::string end = "PK\5\6" + little(0, 4) + little(entries.size(), 2) + little(entries.size(), 2) +
                            little(directory.size(), 4) + little(data.size(), 4) + little(0, 2);
    const std::string all = data + directory + end;
    return {all.begin(), all.end()};
}

std::string deflated(const std::string& text) {
    uLongf size = compressBound(text.size());
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(text.data()), text.size());
    return packed.substr(2, size - 6); // without zlib's own header and checksum
}

class ProjectFileTest : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "zelk-project-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
        fs::create_directories(temporary());
        if (const char* old = getenv("TMPDIR"))
            oldTemporary = old;
        setenv("TMPDIR", temporary().c_str(), 1);
    }
    void TearDown() override {
        if (oldTemporary.empty())
            unsetenv("TMPDIR");
        else
            setenv("TMPDIR", oldTemporary.c_str(), 1);
        fs::remove_all(folder);
    }

    fs::path temporary() const { return folder / "outer" / "temporary"; }
    std::string file() const { return (folder / "movie.zelk").string(); }
    // Everything below the folder that holds the temporary one, so that what leaves it is seen too.
    std::vector<fs::path> scratch() const {
        std::vector<fs::path> paths;
        for (const auto& entry : fs::recursive_directory_iterator(folder / "outer"))
            if (entry.path() != temporary())
                paths.push_back(entry.path());
        return paths;
    }
    // What was left is one empty folder, which this takes away.
    void expectEmptyScratch(const std::string& what) {
        const std::vector<fs::path> left = scratch();
        ASSERT_EQ(left.size(), 1u) << what;
        const std::string name = left[0].filename().string();
        EXPECT_EQ(name.substr(0, 2), "~!") << what;
        EXPECT_EQ(name.size(), 8u) << what;
        EXPECT_EQ(fs::status(left[0]).permissions(), fs::perms::owner_all) << what;
        EXPECT_TRUE(fs::remove(left[0])) << what;
    }
    // The reason of the refusal; empty when there is none.
    std::string refusal(const std::function<void()>& load) {
        try {
            load();
        } catch (const zelk::FileLoadException& error) {
            EXPECT_EQ(error.fileName(), file());
            return error.description();
        }
        return {};
    }

    fs::path folder;
    std::string oldTemporary;
};

TEST_F(ProjectFileTest, TheFirstEntryWithBytesIsTheText) {
    const std::string text = "<Movie/>";
    const Entry other = {"data.xml", "other"};
    const std::vector<std::vector<Entry>> archives = {
        {{"data.xml", text}, other},
        {{"anything", text}, other},
        {{"data.xml", text}, {"data.xml", "second"}},
        {{"empty", ""}, {"folder/", ""}, {"data.xml", text}, other},
        {{"../../evil", text}, other},
        {{(folder / "outer" / "absolute").string(), text}, other},
        {{"..\\evil", text}, other},
        {{"C:\\CON", text}, {"CON", "second"}},
        {{"CON", text}, other},
        {{std::string(300, 'n'), text}, other},
        {{std::string("a\0b", 3), text}, other},
        {{"", text}, other},
        {{"data.xml", text, 0, 8, {}, {}, deflated(text)}, other},
        {{"data.xml", text}, {"wrong", "x", 0, 0, 1}, {"encrypted", "x", 1}}, // faults behind the text
        {{"utf-16", std::string("\xFF\xFE<\0M\0o\0v\0i\0e\0/\0>\0", 18)}},
    };
    for (const std::vector<Entry>& entries : archives) {
        libswf::writeFile(file(), archiveOf(entries));
        EXPECT_EQ(refusal([&] { EXPECT_EQ(zelk::readProject(file()), text) << entries[0].name; }), "")
            << entries[0].name;
        EXPECT_TRUE(scratch().empty()) << entries[0].name;
    }
}

TEST_F(ProjectFileTest, RefusesWhatYieldsNoText) {
    const std::string text(5000, 'x');
    const Entry good = {"data.xml", text};
    const Entry packed = {"data.xml", text, 0, 8, {}, {}, deflated(text)};
    Entry cut = packed, lies = packed, bomb = packed, shortest = good, bzip = packed;
    cut.packed.resize(cut.packed.size() / 2);
    lies.size = 6000; // more than there is
    bomb.size = UINT32_MAX;
    shortest.size = 0;
    bzip.method = 99;
    Bytes tail = archiveOf({good});
    tail.resize(tail.size() - 30);
    Bytes head = archiveOf({good});
    head[0] = 'X'; // what the directory points to is no entry
    Bytes behind = archiveOf({});
    behind.insert(behind.begin(), 10, 'x');
    const struct {
        const char* what;
        Bytes bytes;
        const char* said;
    } rows[] = {
        {"no entries", archiveOf({}), "without entries"},
        {"no entries behind other bytes", behind, "holds no text"},
        {"empty entries", archiveOf({{"a", ""}, {"data.xml", ""}, {"b/", ""}}), "holds no text"},
        {"a wrong checksum", archiveOf({{"a", text, 0, 0, 1}, good}), "entry 0 of the archive is damaged"},
        {"a wrong checksum, deflated", archiveOf({{"a", text, 0, 8, 1, {}, packed.packed}, good}), "entry 0"},
        {"a fault of an empty entry", archiveOf({{"a", "", 0, 0, 1}, good}), "entry 0 of the archive is damaged"},
        {"a fault behind an empty entry", archiveOf({{"a", ""}, cut, good}), "entry 1 of the archive is damaged"},
        {"encrypted", archiveOf({{"a", text, 1}, good}), "entry 0 of the archive is encrypted"},
        {"cut", archiveOf({cut, good}), "entry 0 of the archive is damaged"},
        {"shorter than stated", archiveOf({lies, good}), "entry 0 of the archive is damaged"},
        {"stated to be empty", archiveOf({shortest, good}), "entry 0 of the archive is damaged"},
        {"stated to have 4 GB", archiveOf({bomb, good}), "more than 1 GiB"},
        {"an unknown method", archiveOf({bzip, good}), "entry 0 of the archive is damaged"},
        {"a cut directory", tail, "no zip archive"},
        {"a wrong place", head, "entry 0 of the archive is damaged"},
        {"a movie", {'F', 'W', 'S', 5, 8, 0, 0, 0}, "no zip archive"},
    };
    for (const auto& row : rows) {
        libswf::writeFile(file(), row.bytes);
        const std::string said = refusal([&] { zelk::readProject(file()); });
        EXPECT_NE(said.find(row.said), std::string::npos) << row.what << ": " << said;
        EXPECT_EQ(refusal([&] { zelk::textOfProject(row.bytes, file()); }), said) << row.what;
        expectEmptyScratch(row.what);
    }
    fs::remove(file());
    EXPECT_NE(refusal([&] { zelk::readProject(file()); }), "");
    expectEmptyScratch("no file");
    setenv("TMPDIR", (folder / "missing").c_str(), 1);
    libswf::writeFile(file(), archiveOf({good}));
    EXPECT_NE(refusal([&] { zelk::readProject(file()); }), "");
}

TEST_F(ProjectFileTest, AFullTemporaryFolderIsARefusal) {
    zelk::writeProject(file(), std::string(100000, 'x'));
    onFullDisk(4096, [&] { EXPECT_NE(refusal([&] { zelk::readProject(file()); }), ""); });
    expectEmptyScratch("full");
}

TEST_F(ProjectFileTest, WritesOneDeflatedEntry) {
    const fs::path before = fs::current_path(), current = folder / "current";
    fs::create_directory(current);
    fs::current_path(current);
    const std::string text(200000, 'x');
    const std::time_t start = std::time(nullptr);
    zelk::writeProject("a.zelk", text);
    const std::time_t end = std::time(nullptr);
    const Bytes bytes = libswf::readFile("a.zelk");
    std::vector<fs::path> files(fs::directory_iterator(current), {});
    fs::current_path(before);
    ASSERT_EQ(files.size(), 1u);

    constexpr size_t name = 8, local = 30, central = 46, last = 22; // sizes of "data.xml" and of the three headers
    const uint32_t packed = number(bytes, 18, 4);
    const size_t directory = local + name + packed;
    ASSERT_EQ(bytes.size(), directory + central + name + last); // no second entry, extra field or comment
    EXPECT_EQ(number(bytes, directory + central + name + 10, 2), 1u);
    for (const size_t facts : {size_t(4), directory + 6}) { // the same in both headers
        EXPECT_EQ(number(bytes, facts + 2, 2), 2u) << "deflated as well as possible";
        EXPECT_EQ(number(bytes, facts + 4, 2), 8u);
        EXPECT_EQ(number(bytes, facts + 10, 4), crc32(0, reinterpret_cast<const Bytef*>(text.data()), 200000));
        EXPECT_EQ(number(bytes, facts + 18, 4), 200000u);
        EXPECT_EQ(number(bytes, facts + 22, 4), name);
        EXPECT_LT(packed, 1000u);
        const uint32_t time = number(bytes, facts + 6, 2), date = number(bytes, facts + 8, 2);
        std::tm made{};
        made.tm_year = static_cast<int>(date >> 9) + 80, made.tm_mon = static_cast<int>(date >> 5 & 15) - 1;
        made.tm_mday = date & 31, made.tm_hour = static_cast<int>(time >> 11), made.tm_min = time >> 5 & 63;
        made.tm_sec = static_cast<int>(time & 31) * 2, made.tm_isdst = -1;
        const std::time_t stated = std::mktime(&made);
        EXPECT_GE(stated, start - 2); // in steps of two seconds
        EXPECT_LE(stated, end);
    }
    for (const size_t at : {local, directory + central})
        EXPECT_EQ(std::string(bytes.data() + at, bytes.data() + at + name), "data.xml");
}

TEST_F(ProjectFileTest, WhatWasSavedIsLoaded) {
    std::string noise(300000, '\0'); // several pieces; does not get smaller
    uint32_t state = 1;
    for (char& c : noise)
        c = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    for (const std::string& text : {std::string("x"), noise.substr(0, 65535), noise.substr(0, 65536), noise}) {
        zelk::writeProject(file(), text);
        EXPECT_EQ(zelk::readProject(file()), text) << text.size();
    }
    EXPECT_TRUE(scratch().empty());
    zelk::writeProject(file(), "");
    EXPECT_NE(refusal([&] { zelk::readProject(file()); }), "");
}

TEST(FileKind, FollowsFromTheLastExtension) {
    using zelk::FileKind;
    const struct {
        const char* name;
        std::optional<FileKind> kind;
    } rows[] = {{"a.xml", FileKind::xml},
                {"a.SWF", FileKind::swf},
                {"a.swf.Zelk", FileKind::project},
                {"a.zelk.txt", {}},
                {"zelk", {}},
                {"a.", {}},
                {".xml", FileKind::xml}};
    for (const auto& row : rows)
        EXPECT_EQ(zelk::fileKind(row.name), row.kind) << row.name;
}

} // namespace
