// Small real movies cut short and with single bytes changed: refused in order, or shown, compiled and read again.
#include "Tests.h"

#include "fuzz/Movies.h"

namespace {

using fuzz::Bytes;

struct Movie {
    std::string name;
    Bytes file; // inflated
};

// The movie without its compression; empty when it cannot be read.
Bytes inflated(const std::filesystem::path& path) {
    libswf::SwfMovieSafe movie;
    try {
        fuzz::parse(movie, libswf::readFile(path.string()), true);
    } catch (const libswf::SwfException&) {
        return {};
    }
    const libswf::SwfBytes body = movie.body();
    Bytes file(body.data(), body.data() + body.size());
    file[0] = 'F';
    return file;
}

// Twenty movies of all sizes below 3 KB.
std::vector<Movie> smallMovies() {
    constexpr size_t limit = 3000, wanted = 20;
    std::vector<Movie> small, chosen;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(corpusDir)) {
        if (entry.path().extension() != ".swf" || entry.file_size() > limit)
            continue;
        Bytes file = inflated(entry.path());
        if (!file.empty() && file.size() < limit)
            small.push_back({entry.path().filename().string(), std::move(file)});
    }
    std::sort(small.begin(), small.end(), [](const Movie& a, const Movie& b) {
        return std::pair(a.file.size(), a.name) < std::pair(b.file.size(), b.name);
    });
    for (size_t i = 0; i < wanted && small.size() >= wanted; ++i)
        chosen.push_back(std::move(small[i * small.size() / wanted]));
    return chosen;
}

// Whether the movie is read at all. What is shown may be refused on the way back; what was compiled may not.
bool convert(const Bytes& file, bool keepRaw) {
    libswf::SwfMovieSafe movie;
    bool isRead = false;
    Bytes compiled;
    fuzz::refusable([&] {
        libswf::SwfWarnings warnings;
        fuzz::parse(movie, file, keepRaw, &warnings);
        isRead = true;
        xml2swf::MovieTarget target;
        if (xmlToSwf(fuzz::toXml(movie, keepRaw), target, {}))
            compiled = fuzz::serialise(target.movie);
    });
    if (!compiled.empty()) {
        libswf::SwfMovieSafe again;
        fuzz::parse(again, std::move(compiled), true);
        fuzz::toXml(again, true);
    }
    return isRead;
}

void expectOrder(const Bytes& file, bool mustBeRead, const std::string& what) {
    for (const bool keepRaw : {false, true}) {
        try {
            if (!convert(file, keepRaw) && mustBeRead)
                ADD_FAILURE() << what << ": refused";
        } catch (const std::exception& error) {
            ADD_FAILURE() << what << ", keepRaw " << keepRaw << ": " << error.what();
        }
    }
}

class HostileMovies : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::is_directory(corpusDir))
            GTEST_SKIP() << "no movies at " << corpusDir;
        movies = smallMovies();
        ASSERT_EQ(movies.size(), 20u);
    }

    std::vector<Movie> movies;
};

constexpr size_t longestHeader = 8 + 17 + 4; // with a stage of 31 bits per field

TEST_F(HostileMovies, AreCutAnywhere) {
    for (const Movie& movie : movies) {
        for (size_t size = 0; size < movie.file.size(); ++size) {
            const Bytes cut(movie.file.begin(), movie.file.begin() + static_cast<ptrdiff_t>(size));
            expectOrder(cut, size >= longestHeader, movie.name + " cut to " + std::to_string(size) + " bytes");
        }
    }
}

TEST_F(HostileMovies, HaveAnyByteChanged) {
    for (Movie& movie : movies) {
        for (size_t place = 0; place < movie.file.size(); ++place) {
            const uint8_t byte = movie.file[place];
            // All bits, the lowest, the highest, and what makes the low byte of a tag's header a long one.
            for (const int value : {byte ^ 0xFF, byte ^ 0x01, byte ^ 0x80, byte | 0x3F}) {
                movie.file[place] = static_cast<uint8_t>(value);
                expectOrder(movie.file, place >= longestHeader,
                            movie.name + " with " + std::to_string(value) + " at byte " + std::to_string(place));
            }
            movie.file[place] = byte;
        }
    }
}

} // namespace
