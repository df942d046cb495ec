// Both conversions in memory, beside the work that nothing can do without: inflating, reading and copying.
#include <benchmark/benchmark.h>
#include <unistd.h>
#include <zlib.h>

#include <cmath>
#include <cstdio>
#include <map>

#include "Cases.h"
#include "Conversion.h"
#include "Processes.h"
#include "SwfWarnings.h"

using namespace libswf;

namespace bench {

namespace {

void readAndConvert(const Movie& movie) {
    SwfMovieSafe loaded;
    SwfLoadOptions load;
    load.fullForm = movie.fullForm;
    load.keepRaw = true;
    load.readLater = true;
    loaded.parse(movie.file, load);
    SwfWarnings warnings;
    xml2swf::ConversionOptions options;
    options.keepRaw = true;
    options.warnings = &warnings;
    benchmark::DoNotOptimize(swfToXmlDocument(loaded, options));
}

void compile(const Movie& movie, bool compressed) {
    xml2swf::MovieTarget target;
    SwfWarnings warnings; // all programs ask for them
    xmlToSwf(movie.xml, target, {.warnings = &warnings, .toWrite = true});
    target.movie.isCompressed = compressed;
    benchmark::DoNotOptimize(target.movie.serialise(9));
}

void inflateAndCopy(const Movie& movie) {
    std::vector<uint8_t> body(movie.plain.size());
    if (movie.file[0] == 'C') {
        uLongf size = body.size() - 8;
        uncompress(body.data() + 8, &size, movie.file.data() + 8, movie.file.size() - 8);
    } else {
        body = movie.file;
    }
    std::string text(movie.xml);
    benchmark::DoNotOptimize(body.data());
    benchmark::DoNotOptimize(text.data());
}

void readAndCopy(const Movie& movie) {
    uint64_t sum = 0;
    size_t i = 0;
    for (; i + 8 <= movie.xml.size(); i += 8) {
        uint64_t word;
        std::memcpy(&word, movie.xml.data() + i, 8);
        sum += word;
    }
    std::vector<uint8_t> body(movie.plain);
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(body.data());
}

void deflateBody(const Movie& movie) {
    std::vector<uint8_t> out(compressBound(movie.plain.size()));
    uLongf size = out.size();
    compress2(out.data(), &size, movie.plain.data() + 8, movie.plain.size() - 8, 9);
    benchmark::DoNotOptimize(out.data());
}

struct Work {
    const char* name;
    void (*run)(const Movie&);
    bool deflates = false;
};

const Work works[] = {
    {"inflate+copy", inflateAndCopy}, {"swf-to-xml", readAndConvert},
    {"read+copy", readAndCopy},       {"xml-to-swf", [](const Movie& m) { compile(m, false); }},
    {"deflate", deflateBody, true},   {"xml-to-cws", [](const Movie& m) { compile(m, true); }, true},
};

// Prints as usual and keeps the times for the table of ratios.
class Collector : public benchmark::ConsoleReporter {
public:
    std::map<std::string, double> seconds;

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration)
                seconds[run.benchmark_name()] = run.real_accumulated_time / double(run.iterations);
        }
        ConsoleReporter::ReportRuns(runs);
    }
};

struct Sizes {
    double body, xml;
};
std::map<std::string, Sizes> sizes;

void registerCase(const Case& benchCase) {
    for (const Work& work : works) {
        if (work.deflates && !benchCase.measureDeflate)
            continue;
        const std::string name = benchCase.name + "/" + work.name;
        benchmark::RegisterBenchmark(name.c_str(),
                                     [&](benchmark::State& state) {
                                         const Movie& movie = movieOf(benchCase);
                                         sizes[benchCase.name] = {double(movie.plain.size()), double(movie.xml.size())};
                                         work.run(movie);
                                         for ([[maybe_unused]] auto _ : state)
                                             work.run(movie);
                                         state.SetBytesProcessed(int64_t(state.iterations()) *
                                                                 int64_t(movie.plain.size()));
                                     })
            ->Unit(benchmark::kMillisecond)
            ->MinTime(0.2)
            ->UseRealTime();
    }
}

class Table {
public:
    explicit Table(const std::map<std::string, double>& seconds) : _seconds(seconds) {}

    void print() const {
        std::printf(
            "\n| movie | body MB | XML MB | SWF→XML MB/s | × floor | XML→SWF MB/s | × floor | compressed × deflate |\n"
            "|---|---|---|---|---|---|---|---|\n");
        for (const Case& c : cases()) {
            if (sizes.count(c.name) != 0)
                row(c.name, sizes[c.name]);
        }
        for (const char* family : {"payload", "mixed"}) {
            for (const char* work : {"swf-to-xml", "xml-to-swf"})
                exponent(family, work, 10);
        }
        for (const char* work : {"swf-to-xml", "xml-to-swf"})
            exponent("abc", work, 1);
    }

private:
    double time(const std::string& name, const char* work) const {
        const auto found = _seconds.find(name + "/" + work + "/min_time:0.200/real_time");
        return found == _seconds.end() ? NAN : found->second;
    }

    void row(const std::string& name, const Sizes& size) const {
        const double toXml = time(name, "swf-to-xml"), toSwf = time(name, "xml-to-swf");
        std::printf("| %s | %.2f | %.2f | %.0f | %.1f | %.0f | %.1f | %.2f |\n", name.c_str(), size.body / 1e6,
                    size.xml / 1e6, size.body / 1e6 / toXml, toXml / time(name, "inflate+copy"),
                    size.body / 1e6 / toSwf, toSwf / time(name, "read+copy"),
                    time(name, "xml-to-cws") / time(name, "deflate"));
    }

    void exponent(const std::string& family, const char* work, int megabytes) const {
        const auto timeOf = [&](int size) { return time(family + "-" + std::to_string(size) + "MB", work); };
        const double small = timeOf(megabytes), large = timeOf(10 * megabytes);
        if (std::isfinite(small) && std::isfinite(large))
            std::printf("growth of %s, %s, from %d to %d MB: exponent %.2f\n", family.c_str(), work, megabytes,
                        10 * megabytes, std::log10(large / small));
    }

    const std::map<std::string, double>& _seconds;
};

} // namespace

} // namespace bench

int main(int argc, char** argv) {
    const std::string first = argc > 1 ? argv[1] : "";
    if (first == "--processes") {
        bench::measureProcesses(argv[0], {argv + 2, argv + argc});
        return 0;
    }
    if (first == "--write-case" && argc == 4) {
        bench::writeCase(argv[2], argv[3]);
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    for (const bench::Case& benchCase : bench::cases())
        bench::registerCase(benchCase);
    bench::Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    bench::Table(collector.seconds).print();
    std::fflush(stdout);
    std::vector<char*> again{argv[0], const_cast<char*>("--processes")}; // a small process
    for (const bench::Case& benchCase : bench::cases()) {
        if (bench::sizes.count(benchCase.name) != 0)
            again.push_back(const_cast<char*>(benchCase.name.c_str()));
    }
    again.push_back(nullptr);
    execv(argv[0], again.data());
    return 1;
}
