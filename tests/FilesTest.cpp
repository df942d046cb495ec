// Files on the disk: read, written whole or not at all, and what is told of those that cannot be.
#include "Tests.h"

#include "SmallDisk.h"
#include "SwfVector.h"

using namespace libswf;

namespace {

// A folder that goes with the test.
struct Folder {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("zelk-test-" + std::to_string(std::random_device()()));
    Folder() { std::filesystem::create_directories(path); }
    ~Folder() { std::filesystem::remove_all(path); }
    std::string file(const char* name) const { return path.string() + "/" + name; }
    ptrdiff_t count() const {
        return std::distance(std::filesystem::directory_iterator(path), std::filesystem::directory_iterator());
    }
};

template <class Act>
uint32_t fileFailure(const std::string& name, Act act) {
    try {
        act();
        return 0;
    } catch (const SwfFileException& error) {
        EXPECT_EQ(error.fileName(), name);
        return error.code();
    }
}

template <class Act>
std::string problemOf(Act act) {
    try {
        act();
        return {};
    } catch (const SwfFileException& error) {
        EXPECT_EQ(std::string(error.what()).find(error.fileName()), 0u) << "named once, in front";
        return error.problem();
    }
}

// In the system's own words.
TEST(Files, AFailureTellsTheReason) {
    const Folder folder;
    const auto expected = [](const char* what, int error) {
        return what + (": " + std::generic_category().message(error));
    };
    EXPECT_EQ(problemOf([&] { readFile(folder.file("none")); }), expected("cannot be opened for reading", ENOENT));
    EXPECT_EQ(problemOf([&] { readFile(folder.path.string()); }), expected("cannot be read", EISDIR));
    EXPECT_EQ(problemOf([&] { writeFile(folder.file("none/file"), Bytes{1}); }),
              expected("cannot be opened for writing", ENOENT));
    EXPECT_EQ(problemOf([&] { writeFile(folder.path.string(), Bytes{1}); }),
              expected("cannot be opened for writing", EISDIR));
#ifdef __linux__
    EXPECT_EQ(problemOf([&] { readFile(folder.file(std::string(300, 'x').c_str())); }),
              expected("cannot be opened for reading", ENAMETOOLONG));
    EXPECT_EQ(problemOf([&] { writeFile("/proc/zelk", Bytes{1}); }), expected("cannot be opened for writing", ENOENT));
    EXPECT_EQ(problemOf([&] { writeFile("/dev/full", Bytes{1}); }), expected("cannot be opened for writing", EACCES));
#endif
}

TEST(Files, ReadAndWrite) {
    const Folder folder;
    const std::string file = folder.file("b\xC3\xA4r.swf");
    auto write = [&](const std::string& name, const Bytes& bytes) {
        return fileFailure(name, [&] { writeFile(name, bytes); });
    };
    auto read = [&](const std::string& name) { return fileFailure(name, [&] { readFile(name); }); };
    EXPECT_EQ(write(file, {1, 2, 3}), 0u);
    EXPECT_EQ(write(file, {4}), 0u);
    EXPECT_EQ(readFile(file), Bytes{4});
    // Bytes that text mode would change or stop at, under a name that no code page but UTF-8 can hold whole.
    const std::string other = folder.file("\xD0\x96\xE6\x97\xA5\xF0\x9F\x8E\xAC.swf");
    const Bytes special = {'a', '\n', '\r', '\n', 0x1A, 0, 'b'};
    EXPECT_EQ(write(other, special), 0u);
    EXPECT_EQ(readFile(other), special);

    EXPECT_EQ(read(folder.file("none")), 4097u);
    EXPECT_EQ(read(folder.file("no UTF-8 \xFF")), 4097u);
    EXPECT_EQ(write(folder.file("no UTF-8 \xFF/file"), {1}), 4098u);
    EXPECT_EQ(read(folder.path.string()), 4099u);
    EXPECT_EQ(write(folder.file("none/file"), {1}), 4098u);
    EXPECT_EQ(write(folder.path.string(), {1}), 4098u);
    EXPECT_THROW(writeFile(file, {}), SwfAssertionFailure);
    const uint8_t byte = 0;
    EXPECT_THROW(writeFile(file, {&byte, 0}), SwfAssertionFailure);
    writeTextFile(folder.file("empty"), "");
    EXPECT_TRUE(readFile(folder.file("empty")).empty());
    EXPECT_EQ(folder.count(), 3); // nothing is left lying about
}

TEST(Files, MoviesAreSavedAtTheLevelThatIsAskedFor) {
    const Folder folder;
    SwfMovie movie(8, 0, 0, 1, true);
    SwfMovieSafe safe;
    for (int i = 0; i < 1000; ++i)
        movie.tags.append(std::make_shared<SwfTagShowFrame>());
    movie.save(folder.file("stored"), 0);
    movie.save(folder.file("packed"), 9);
    safe.load(folder.file("packed"), SwfLoadOptions());
    safe.save(folder.file("again"), 0);
    EXPECT_GT(readFile(folder.file("stored")).size(), 2000u);
    EXPECT_LT(readFile(folder.file("packed")).size(), 100u);
    EXPECT_EQ(readFile(folder.file("again")), readFile(folder.file("stored")));
}

#ifndef _WIN32 // no permission bits, links or limits of this kind there

TEST(Files, KeepPermissionsAndLinks) {
    const Folder folder;
    const std::string file = folder.file("movie.swf"), link = folder.file("link");
    writeFile(file, Bytes{1});
    std::filesystem::permissions(file, std::filesystem::perms(0600));
    writeFile(file, Bytes{4});
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
    std::filesystem::create_symlink(file, link);
    writeFile(link, Bytes{5});
    EXPECT_EQ(readFile(file), Bytes{5}); // through the link, which stays one
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    const std::string name(255, 'n'); // as long as a name may be
    const std::string longest = folder.file(name.c_str());
    writeFile(longest, Bytes{6});
    EXPECT_EQ(readFile(longest), Bytes{6});
    EXPECT_EQ(folder.count(), 3);
}

// A disk that is full in the middle of a save.
TEST(Files, AFailedSaveLeavesTheOldFile) {
    const Folder folder;
    const std::string file = folder.file("movie.swf");
    writeFile(file, Bytes{1, 2, 3});
    std::string problem;
    onFullDisk(4096, [&] { problem = problemOf([&] { writeFile(file, Bytes(100000)); }); });
    EXPECT_EQ(problem, "cannot be written: " + std::generic_category().message(EFBIG));
    EXPECT_EQ(readFile(file), (Bytes{1, 2, 3}));
    EXPECT_EQ(folder.count(), 1);
}

#endif

} // namespace
