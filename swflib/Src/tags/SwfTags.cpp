#include "SwfTags.h"

#include <algorithm>
#include <span>

#include "SwfInOrder.h"
#include "SwfTagCodes.h"
#include "SwfTagReader.h"
#include "SwfWarnings.h"

namespace libswf {

static constexpr uint32_t endSize = 2;

void SwfTags::append(SwfTagWrapper tag) {
    if (tag->isDefinition())
        _definitions[tag->definitionId()] = tag.get();
    _tags.push_back(std::move(tag));
}

SwfTag& SwfTags::at(uint32_t index) const { return *sharedAt(index); }

const SwfTagWrapper& SwfTags::sharedAt(uint32_t index) const {
    swfAssert(index < _tags.size(), "index < _tags.size()");
    return _tags[index];
}

SwfTag* SwfTags::definition(uint16_t characterId) const {
    const auto found = _definitions.find(characterId);
    return found == _definitions.end() ? nullptr : found->second;
}

uint32_t SwfTags::showFrames() const {
    return static_cast<uint32_t>(
        std::count_if(_tags.begin(), _tags.end(), [](const auto& tag) { return tag->type == SwfTagCode::ShowFrame; }));
}

namespace {

using Tags = std::vector<SwfTagWrapper>;

struct Range {
    size_t first = 0, end = 0;
};

// Runs `act` on each tag that is written, in a tag state of its own; an error names the tag that it came from.
template <class Act>
void forEachWritten(const Tags& tags, Range range, SwfContext& context, Act act) {
    for (size_t i = range.first; i < range.end; ++i) {
        SwfTag& tag = *tags[i];
        if (tag.type == SwfTagCode::End)
            continue;
        SwfTagScope scope(context);
        context.tagType = tag.type;
        try {
            act(tag);
        } catch (SwfException& error) {
            error.addTag(static_cast<uint32_t>(i), tagName(tag.type));
            throw;
        }
    }
}

// Bytes of the records.
uint64_t measureTags(const Tags& tags, Range range, SwfContext& context) {
    uint64_t total = 0;
    forEachWritten(tags, range, context, [&](SwfTag& tag) {
        tag.prepare();
        total += tag.getSize(context);
        total += tag.headerSize();
    });
    return total;
}

void writeTags(const Tags& tags, Range range, SwfOStream& stream) {
    forEachWritten(tags, range, stream.context, [&](SwfTag& tag) {
        stream.context.tagSize = tag.size;
        const uint64_t end = stream.written() + tag.headerSize() + tag.size;
        tag.write(stream);
        stream.flushBits();
        swfAssert(stream.written() <= end, "written <= size");
        while (stream.written() < end)
            stream.writeUI8(0);
    });
}

constexpr size_t mostParts = 64;

// Tags that one thread writes in a row, to their place in the movie.
struct WrittenPart {
    Range range;
    uint64_t bytes = 0;
    std::span<uint8_t> place;
    SwfWarnings warnings;
};

std::vector<WrittenPart> writtenParts(const Tags& tags, uint64_t total) {
    std::vector<WrittenPart> parts;
    const uint64_t least = total / mostParts;
    for (size_t i = 0; i < tags.size(); ++i) {
        if (parts.empty() || parts.back().bytes > least)
            parts.emplace_back().range = {i, i};
        if (tags[i]->type != SwfTagCode::End)
            parts.back().bytes += uint64_t(tags[i]->headerSize()) + tags[i]->size;
        parts.back().range.end = i + 1;
    }
    return parts;
}

} // namespace

uint32_t SwfTags::getSize(SwfContext& context) {
    return setSize(endSize + measureTags(_tags, {0, _tags.size()}, context));
}

uint32_t SwfTags::setSize(uint64_t total) {
    if (total > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "a tag list of more than 4 GB");
    return size = static_cast<uint32_t>(total);
}

uint32_t SwfTags::getSizeInParts(const SwfContext& context, uint32_t asked) {
    uint64_t total = endSize;
    uint32_t threads = 1;
    size_t done = 0;
    for (SwfContext own = context; done < _tags.size() && threads == 1; ++done) {
        total += measureTags(_tags, {done, done + 1}, own);
        threads = threadsFor(total >= bigBody, asked);
    }
    const size_t left = _tags.size() - done, inPart = left / mostParts + 1;
    if (inPart == 1)
        threads = 1; // so few are measured sooner than a thread starts
    std::vector<uint64_t> sizes((left + inPart - 1) / inPart);
    const auto work = [&](size_t part) {
        const size_t first = done + part * inPart;
        SwfContext own = context;
        sizes[part] = measureTags(_tags, {first, std::min(first + inPart, _tags.size())}, own);
    };
    workInOrder({sizes.size(), work, [&](size_t part) { total += sizes[part]; }}, threads);
    return setSize(total);
}

void SwfTags::write(SwfOStream& stream) const {
    writeTags(_tags, {0, _tags.size()}, stream);
    stream.writeUI16(0);
}

void SwfTags::writeRecordsInParts(SwfOStream& stream, uint32_t asked) const {
    std::vector<WrittenPart> parts = writtenParts(_tags, size);
    uint64_t most = 0;
    for (const WrittenPart& part : parts)
        most = std::max(most, part.bytes);
    const uint32_t threads = threadsFor(size - most >= bigBody, asked); // the others' share
    if (threads == 1)
        return writeTags(_tags, {0, _tags.size()}, stream);
    for (WrittenPart& part : parts)
        part.place = stream.claimPlace(part.bytes);
    SwfWarnings* warnings = stream.context.warnings;
    const auto work = [&](size_t i) {
        SwfOStream own(parts[i].place);
        own.context = stream.context;
        own.context.warnings = warnings == nullptr ? nullptr : &parts[i].warnings;
        writeTags(_tags, parts[i].range, own);
    };
    const auto take = [&](size_t i) {
        if (warnings != nullptr)
            warnings->add(std::move(parts[i].warnings));
    };
    workInOrder({parts.size(), work, take}, threads);
}

void SwfTags::read(SwfIStream& stream, uint32_t length) {
    readUntil(stream, length == 0 ? stream.size() : stream.position() + length);
}

void SwfTags::readUntil(SwfIStream& stream, uint64_t end) {
    readTagList(stream, end, [&](std::unique_ptr<SwfTag> tag) { append(std::move(tag)); });
}

void SwfTagsSafe::append(SwfTagWrapper tag) {
    if (tag->isDefinition()) {
        _definitions[tag->definitionId()] = tag;
        _indices[tag->definitionId()] = _tags.count();
    }
    _tags.append(std::move(tag));
}

SwfTag* SwfTagsSafe::at(uint32_t tagIndex) const { return sharedAt(tagIndex).get(); }

SwfTagWrapper SwfTagsSafe::sharedAt(uint32_t tagIndex) const {
    swfAssert(tagIndex < _tags.count(), "tagIndex < _tags.size()");
    return _tags.items()[tagIndex];
}

SwfTagWrapper SwfTagsSafe::definition(uint16_t characterId) const {
    const auto found = _definitions.find(characterId);
    return found == _definitions.end() ? nullptr : found->second;
}

uint32_t SwfTagsSafe::definitionIndex(uint16_t characterId) const {
    const auto found = _indices.find(characterId);
    return found == _indices.end() ? count() : found->second;
}

void SwfTagsSafe::read(SwfIStream& stream, uint32_t length) {
    readUntil(stream, length == 0 ? stream.size() : stream.position() + length);
}

void SwfTagsSafe::readUntil(SwfIStream& stream, uint64_t end) {
    readTagList(stream, end, [&](std::unique_ptr<SwfTag> tag) { append(std::move(tag)); });
}

} // namespace libswf
