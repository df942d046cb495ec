#include "GeneratedMovies.h"

#include <algorithm>
#include <random>

#include "SwfMovie.h"

namespace bench {

using namespace libswf;

namespace {

std::mt19937 random(12345);

int32_t between(int32_t low, int32_t high) { return std::uniform_int_distribution<int32_t>(low, high)(random); }

std::vector<uint8_t> bytesOf(SwfOStream& stream) { return {stream.begin(), stream.end()}; }

void writeEdge(SwfOStream& stream) {
    const int32_t values[] = {between(-300, 300), between(-300, 300), between(-300, 300), between(-300, 300)};
    const bool straight = between(0, 3) != 0;
    const uint32_t width = bitsSignedMax(values, straight ? 2 : 4);
    stream.writeUB(1, 1);
    stream.writeUB(1, straight);
    stream.writeUB(4, width - 2);
    if (straight)
        stream.writeUB(1, 1); // both deltas follow
    for (int i = 0; i < (straight ? 2 : 4); ++i)
        stream.writeSB(width, values[i]);
}

// DefineShape with one solid fill, one line and `edges` edges.
std::vector<uint8_t> shape(uint16_t id, size_t edges) {
    SwfOStream stream(64 + edges * 12);
    stream.writeUI16(id);
    SwfRect(-4000, -4000, 4000, 4000).write(stream);
    stream.writeBytes(std::vector<uint8_t>{1, 0x00, 0x33, 0x66, 0x99}); // one solid fill
    stream.writeBytes(std::vector<uint8_t>{1, 20, 0, 0, 0, 0});         // one line style
    stream.writeUB(8, 0x11);                                            // one bit each for fill and line indices
    stream.writeUB(6, 0b001011);                                        // a style change with line, fill 0 and a move
    stream.writeUB(5, 8);
    stream.writeSB(8, 100);
    stream.writeSB(8, -100);
    stream.writeUB(2, 0b11);
    for (size_t i = 0; i < edges; ++i)
        writeEdge(stream);
    stream.writeUB(6, 0);
    stream.flushBits();
    return bytesOf(stream);
}

// A script of the actions that real scripts mostly have.
std::vector<uint8_t> actions(size_t bytes) {
    SwfOStream stream(bytes + 256);
    while (stream.size() < bytes) {
        stream.writeBytes(
            std::vector<uint8_t>{0x96, 9, 0, 8, static_cast<uint8_t>(between(0, 200)), 7, 1, 2, 3, 4, 4, 1});
        stream.writeBytes(std::vector<uint8_t>{0x4E, 0x1C, 0x0B, 0x12});
        // To the end of the round, or of one of the next: 17 bytes, and 38 for each more.
        const uint32_t rounds = stream.size() + 3 * 38 < bytes ? between(0, 2) : 0;
        stream.writeBytes(std::vector<uint8_t>{0x9D, 2, 0, static_cast<uint8_t>(17 + 38 * rounds), 0});
        stream.writeBytes(std::vector<uint8_t>{0x96, 7, 0, 0, 'v', 'a', 'l', 'u', 'e', 0, 0x17});
        stream.writeBytes(std::vector<uint8_t>{0x87, 1, 0, 2, 0x52, 0x3E});
    }
    stream.writeUI8(0);
    return bytesOf(stream);
}

std::vector<uint8_t> noise(size_t bytes) {
    std::vector<uint8_t> result(bytes);
    for (uint8_t& byte : result)
        byte = static_cast<uint8_t>(random());
    return result;
}

void add(SwfTags& tags, uint16_t code, std::vector<uint8_t> body) {
    tags.append(std::make_shared<SwfTagUnknown>(code, SwfBytes::adopt(std::move(body))));
}

// One tag of each kind asked for, smaller ones in small movies.
void addContent(SwfTags& tags, Content content, uint16_t id, size_t movieBytes) {
    const size_t edges = std::min<size_t>(20000, movieBytes / 16), script = std::min<size_t>(60000, movieBytes / 4);
    const size_t picture = std::clamp<size_t>(movieBytes / 2, 2, 200000);
    if (content == Content::shapes || content == Content::mixed)
        add(tags, 2, shape(id, edges));
    if (content == Content::actions || content == Content::mixed)
        add(tags, 12, actions(script));
    if (content == Content::payload || content == Content::mixed) {
        std::vector<uint8_t> body = noise(picture);
        body[0] = static_cast<uint8_t>(id);
        body[1] = static_cast<uint8_t>(id >> 8);
        add(tags, 21, std::move(body));
    }
    add(tags, 1, {});
}

std::vector<uint8_t> fileOf(SwfMovie& movie) {
    const SwfVector<uint8_t> file = movie.serialise(9);
    return {file.begin(), file.end()};
}

} // namespace

std::vector<uint8_t> generateMovie(Content content, size_t bytes) {
    SwfMovie movie(8, 11000, 8000, 12, false);
    size_t size = 0;
    for (uint16_t id = 1; size < bytes; ++id) {
        addContent(movie.tags, content, id, bytes);
        SwfContext context;
        size = movie.tags.getSize(context);
    }
    return fileOf(movie);
}

std::vector<uint8_t> generateShape(size_t edges) {
    SwfMovie movie(8, 11000, 8000, 12, false);
    add(movie.tags, 2, shape(1, edges));
    return fileOf(movie);
}

std::vector<uint8_t> compressMovie(const std::vector<uint8_t>& movie) {
    SwfOStream stream(movie.size());
    stream.writeBytes(movie);
    stream.data()[0] = 'C';
    stream.compress(9);
    return bytesOf(stream);
}

} // namespace bench
