#include "Processes.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "Cases.h"
#include "GeneratedMovies.h"
#include "SwfUtils.h"

extern char** environ;

namespace bench {

namespace fs = std::filesystem;

namespace {

struct Usage {
    double seconds = 0;
    double peakBytes = 0;
};

Usage runProcess(const std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    if (posix_spawnp(&child, argv[0], nullptr, nullptr, argv.data(), environ) != 0)
        return {};
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    return {time.count(), double(usage.ru_maxrss) * 1024};
}

Usage bestOf(int runs, const std::vector<std::string>& arguments) {
    Usage best = runProcess(arguments);
    for (int i = 1; i < runs; ++i) {
        const Usage usage = runProcess(arguments);
        best.seconds = std::min(best.seconds, usage.seconds);
        best.peakBytes = std::max(best.peakBytes, usage.peakBytes);
    }
    return best;
}

class Scratch {
public:
    Scratch() : _folder(fs::temp_directory_path() / ("zelk-bench-" + std::to_string(getpid()))) {
        fs::create_directories(_folder);
    }
    ~Scratch() { fs::remove_all(_folder); }
    std::string path(const std::string& name) const { return (_folder / name).string(); }

private:
    fs::path _folder;
};

void measureStart(const Scratch& scratch) {
    const std::string small = scratch.path("small.swf");
    libswf::writeFile(small, generateMovie(Content::mixed, 3000));
    const Usage empty = bestOf(40, {"true"});
    const Usage convert = bestOf(40, {ZELKC_PATH, "convert", "--quiet", small, scratch.path("small.xml")});
    std::printf("\none small movie, whole process: %.2f ms, %.2f ms above an empty process (goal 3)\n",
                convert.seconds * 1e3, (convert.seconds - empty.seconds) * 1e3);
}

// The sum of inflating each movie alone.
double inflateSeconds(const std::vector<uint8_t>& file, size_t bodySize) {
    std::vector<uint8_t> body(bodySize);
    const auto start = std::chrono::steady_clock::now();
    uLongf size = body.size();
    uncompress(body.data(), &size, file.data() + 8, file.size() - 8);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void measureManyFiles(const Scratch& scratch) {
    constexpr int count = 300;
    std::vector<std::string> arguments = {ZELKC_PATH,          "convert", "--quiet", "--out-dir",
                                          scratch.path("out"), "--to",    "xml"};
    fs::create_directories(scratch.path("out"));
    double floor = 0;
    for (int i = 0; i < count; ++i) {
        const std::vector<uint8_t> plain = generateMovie(Content::mixed, 10000);
        const std::vector<uint8_t> file = compressMovie(plain);
        floor += inflateSeconds(file, plain.size() - 8);
        arguments.push_back(scratch.path("m" + std::to_string(i) + ".swf"));
        libswf::writeFile(arguments.back(), file);
    }
    const Usage all = bestOf(5, arguments);
    std::printf("%d small movies in one call: %.1f ms, %.1f × the sum of their inflates (goal 10)\n", count,
                all.seconds * 1e3, all.seconds / floor);
}

double inflatedSize(const std::string& swf) {
    const std::vector<uint8_t> file = libswf::readFile(swf);
    uint32_t length = 0;
    std::memcpy(&length, file.data() + 4, sizeof length);
    return length;
}

void measureMemory(const Scratch& scratch, const char* self, const std::set<std::string>& names) {
    const double empty = runProcess({ZELKC_PATH, "--version"}).peakBytes;
    std::printf(
        "\n| movie | body + XML MB | peak MB, SWF→XML | × | peak MB, XML→SWF | × |\n|---|---|---|---|---|---|\n");
    const std::string swf = scratch.path("movie.swf"), xml = scratch.path("movie.xml");
    for (const Case& c : cases()) {
        if (names.count(c.name) == 0)
            continue;
        runProcess({self, "--write-case", c.name, swf});
        const char* form = c.fullForm ? "full" : "classic";
        const Usage there = runProcess({ZELKC_PATH, "convert", "--quiet", "--form", form, swf, xml});
        const Usage back =
            runProcess({ZELKC_PATH, "convert", "--quiet", "--level", "1", xml, scratch.path("back.swf")});
        const double sum = inflatedSize(swf) + double(fs::file_size(xml));
        auto ratio = [&](const Usage& usage) { return (usage.peakBytes - empty) / sum; };
        std::printf("| %s | %.1f | %.1f | %.2f | %.1f | %.2f |\n", c.name.c_str(), sum / 1e6, there.peakBytes / 1e6,
                    ratio(there), back.peakBytes / 1e6, ratio(back));
    }
}

} // namespace

void measureProcesses(const char* self, const std::set<std::string>& names) {
    const Scratch scratch;
    if (names.size() == cases().size()) {
        measureStart(scratch);
        measureManyFiles(scratch);
    }
    measureMemory(scratch, self, names);
}

void writeCase(const char* name, const char* fileName) {
    for (const Case& c : cases()) {
        if (c.name == name)
            libswf::writeFile(fileName, c.makeFile());
    }
}

} // namespace bench
