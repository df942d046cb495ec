// Tag lists and the factory that builds tags.
#pragma once

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "SwfTag.h"

namespace libswf {

/// A shared hold on a tag, which may outlive its list.
using SwfTagWrapper = std::shared_ptr<SwfTag>;

/// An ordered list of tags, each owned through a shared pointer, with a map from character id to the defining tag.
class SwfTags : public SwfStruct {
public:
    SwfTags() = default;
    SwfTags(const SwfTags&) = delete;
    SwfTags& operator=(const SwfTags&) = delete;
    SwfTags(SwfTags&&) noexcept = default;
    SwfTags& operator=(SwfTags&&) noexcept = default;

    void append(SwfTagWrapper tag);
    uint32_t count() const { return static_cast<uint32_t>(_tags.size()); }
    /// Asserts "index < _tags.size()".
    SwfTag& at(uint32_t index) const;
    const SwfTagWrapper& sharedAt(uint32_t index) const;
    /// The last tag that defines this character; null when there is none.
    SwfTag* definition(uint16_t characterId) const;
    uint32_t showFrames() const;
    const std::vector<SwfTagWrapper>& items() const { return _tags; }

    /// Bytes of all records and the closing End; also prepares and measures every tag.
    uint32_t getSize(SwfContext& context);
    /// Writes the records with the sizes that getSize found. A body that comes out shorter than measured is filled up
    /// with zero bytes, so that the next record stays where its header says.
    void write(SwfOStream& stream) const;

    /// The same on several threads for the list of a big movie, in which no tag stands twice; write without the closing
    /// End. The bytes, the first error and the warnings are those of one thread.
    uint32_t getSizeInParts(const SwfContext& context, uint32_t threads = 0);
    void writeRecordsInParts(SwfOStream& stream, uint32_t threads = 0) const;

    /// Reads records for `length` bytes, 0 for all the data. Tolerant: a tag whose body cannot be read is dropped, or
    /// kept raw when the context says so.
    void read(SwfIStream& stream, uint32_t length);
    /// The same up to a position in the stream.
    void readUntil(SwfIStream& stream, uint64_t end);

private:
    uint32_t setSize(uint64_t total);

    std::vector<SwfTagWrapper> _tags;
    std::unordered_map<uint16_t, SwfTag*> _definitions;
};

/// The tag list of a movie that is read tolerantly: tags may outlive the list.
class SwfTagsSafe : public SwfStruct {
public:
    void append(SwfTagWrapper tag);
    uint32_t count() const { return _tags.count(); }
    /// Both assert "tagIndex < _tags.size()".
    SwfTag* at(uint32_t tagIndex) const;
    SwfTagWrapper sharedAt(uint32_t tagIndex) const;
    SwfTagWrapper definition(uint16_t characterId) const;
    /// Position of the tag that defines a character; count() when there is none.
    uint32_t definitionIndex(uint16_t characterId) const;

    SwfTags& tags() { return _tags; }
    const SwfTags& tags() const { return _tags; }

    uint32_t getSize(SwfContext& context) { return size = _tags.getSize(context); }
    void write(SwfOStream& stream) const { _tags.write(stream); }
    void read(SwfIStream& stream, uint32_t length);
    void readUntil(SwfIStream& stream, uint64_t end);

private:
    SwfTags _tags;
    std::unordered_map<uint16_t, SwfTagWrapper> _definitions;
    std::unordered_map<uint16_t, uint32_t> _indices;
};

/// The header of one record.
struct SwfTagHeader {
    uint16_t code = 0;
    uint32_t length = 0;
    bool isLong = false;
    uint64_t start = 0; ///< position of the header
    uint64_t body = 0;  ///< position of the body
};

/// A tag list being read, as its tags need it later. Kept by these.
struct SwfTagListReading {
    std::shared_ptr<const uint8_t> buffer;
    size_t bufferSize;
    uint64_t end; ///< of the list
    SwfContext context;
    std::vector<uint32_t> path; ///< of the list; the last index is a tag's
};

/// A tag of a movie that was not read yet. Written, it is the record of its file.
class SwfTagLater : public SwfTagRecord {
public:
    SwfTagLater(std::shared_ptr<const SwfTagListReading> list, SwfBytes record, uint32_t index);

    bool isDefinition() const override { return _characterId.has_value(); }
    uint16_t definitionId() const override { return _characterId.value_or(0); }
    const SwfTagLater* later() const override { return this; }
    /// The tag as it would have been read with the movie. On any thread. `outline` receives that of its script, in the
    /// full form; of several scripts that of the last.
    std::unique_ptr<SwfTag> read(SwfWarnings* warnings, SwfScriptOutline* outline) const;

private:
    const std::shared_ptr<const SwfTagListReading> _list;
    const uint32_t _index;
    std::optional<uint16_t> _characterId;
};

/// Reads a record header. False, with the position unchanged, when fewer bytes are left before `end` than it takes.
bool readTagHeader(SwfIStream& stream, uint64_t end, SwfTagHeader& header);

/// The factory: builds the tag whose code and length stand in the stream's context and whose body is next.
std::unique_ptr<SwfTag> readTag(SwfIStream& stream);

/// Sprites read from here on are SwfTagDefineSpriteSafe. Works only before the first tag is built.
void chooseSafeSprites();

} // namespace libswf
