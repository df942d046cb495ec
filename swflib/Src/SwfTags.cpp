#include "SwfTags.h"

#include "SwfTagCodes.h"
#include "SwfTagReader.h"

namespace libswf {

void SwfTags::append(std::shared_ptr<SwfTag> tag) {
    if (tag->isDefinition())
        _definitions[tag->definitionId()] = tag.get();
    _tags.push_back(std::move(tag));
}

SwfTag& SwfTags::at(uint32_t index) const { return *sharedAt(index); }

const std::shared_ptr<SwfTag>& SwfTags::sharedAt(uint32_t index) const {
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

// Runs `act` on each tag that is written, in a tag state of its own; an error names the tag that it came from.
template <class Act>
static void forEachWritten(const std::vector<std::shared_ptr<SwfTag>>& tags, SwfContext& context, Act act) {
    for (size_t i = 0; i < tags.size(); ++i) {
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

uint32_t SwfTags::getSize(SwfContext& context) {
    uint64_t total = 2; // the closing End
    forEachWritten(_tags, context, [&](SwfTag& tag) {
        tag.prepare();
        total += tag.getSize(context);
        total += tag.headerSize();
    });
    if (total > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "a tag list of more than 4 GB");
    return size = static_cast<uint32_t>(total);
}

void SwfTags::write(SwfOStream& stream) const {
    writeRecords(stream);
    stream.writeUI16(0);
}

void SwfTags::writeRecords(SwfOStream& stream) const {
    forEachWritten(_tags, stream.context, [&](SwfTag& tag) {
        stream.context.tagSize = tag.size;
        const uint64_t end = stream.written() + tag.headerSize() + tag.size;
        tag.write(stream);
        stream.flushBits();
        swfAssert(stream.written() <= end, "written <= size");
        while (stream.written() < end)
            stream.writeUI8(0);
    });
}

void SwfTags::read(SwfIStream& stream, uint32_t length) {
    readUntil(stream, length == 0 ? stream.size() : stream.position() + length);
}

void SwfTags::readUntil(SwfIStream& stream, uint64_t end) {
    readTagList(stream, end, [&](std::unique_ptr<SwfTag> tag) { append(std::move(tag)); });
}

void SwfTagsSafe::append(std::shared_ptr<SwfTag> tag) {
    if (tag->isDefinition()) {
        _definitions[tag->definitionId()] = tag;
        _indices[tag->definitionId()] = _tags.count();
    }
    _tags.append(std::move(tag));
}

SwfTag* SwfTagsSafe::at(uint32_t tagIndex) const { return sharedAt(tagIndex).get(); }

std::shared_ptr<SwfTag> SwfTagsSafe::sharedAt(uint32_t tagIndex) const {
    swfAssert(tagIndex < _tags.count(), "tagIndex < _tags.size()");
    return _tags.items()[tagIndex];
}

std::shared_ptr<SwfTag> SwfTagsSafe::definition(uint16_t characterId) const {
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
