#include "SwfTagReader.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "SwfAllTags.h"
#include "SwfTagCodes.h"
#include "SwfWarnings.h"

namespace libswf {

namespace {

std::atomic<bool> safeSprites = false;

using Creator = std::unique_ptr<SwfTag> (*)(SwfIStream&);

template <class Tag>
std::unique_ptr<SwfTag> create(SwfIStream& stream) {
    return std::make_unique<Tag>(stream);
}

using Creators = std::array<Creator, SwfIStream::tagCodes>;

Creators makeCreators(bool fullForm) {
    Creators creators{};
#define SWF_TAG(code, name) creators[code] = create<SwfTag##name>;
#define SWF_FULL_TAG(code, name) creators[code] = fullForm ? create<SwfTag##name> : nullptr;
#include "SwfTags.def"
    // In the classic form an import table read from a file becomes a frame label, on purpose; SwfTagImportAssets is
    // built from XML only. Readers that keep raw what they cannot give back mark code 57 as raw.
    if (!fullForm)
        creators[SwfTagCode::ImportAssets] = creators[SwfTagCode::FrameLabel];
    if (safeSprites)
        creators[SwfTagCode::DefineSprite] = create<SwfTagDefineSpriteSafe>;
    return creators;
}

bool isShape(uint16_t code) {
    return code == SwfTagCode::DefineShape || code == SwfTagCode::DefineShape2 || code == SwfTagCode::DefineShape3 ||
           code == SwfTagCode::DefineShape4;
}

// Reading it depends on no other tag.
bool mayBeReadLater(const SwfIStream& stream, uint16_t code) {
    const bool isScript = code == SwfTagCode::DoAction || code == SwfTagCode::DoInitAction;
    return (isScript || isShape(code)) && stream.context.readLater && stream.buffer() != nullptr;
}

bool keptAsBytes(SwfIStream& stream, uint16_t code) {
    return (code < SwfIStream::tagCodes && (stream.tagOptions(code) & 1) != 0) ||
           (code == SwfTagCode::DefineSprite && stream.context.spriteDepth >= SwfContext::maxDepth);
}

void warn(const SwfIStream& stream, const SwfTagHeader& header, SwfWarning::Kind kind, uint64_t offset,
          const std::string& reason) {
    if (stream.context.warnings == nullptr)
        return;
    SwfWarning warning;
    warning.kind = kind;
    warning.tagCode = header.code;
    warning.tagName = tagName(header.code);
    warning.path = tagPathText(stream.tagPath);
    warning.offset = offset;
    warning.reason = reason;
    stream.context.warnings->add(std::move(warning));
}

// A header is written as long as it was read.
void setHeader(SwfTag& tag, const SwfContext& context, uint32_t size) {
    tag.size = size;
    tag.longHeader = tag.longHeader || context.tagLongHeader || context.tagSize > 63;
}

// Why the tag just read cannot give its body back; empty when it can.
std::string loss(const SwfIStream& stream, uint64_t bodyEnd) {
    if (stream.inexact() != nullptr)
        return stream.inexact();
    if (stream.position() > bodyEnd)
        return "its fields take more bytes than its length says";
    const uint8_t* unread = stream.data() + stream.position();
    const uint8_t* end = stream.data() + bodyEnd;
    if (std::any_of(unread, end, [](uint8_t byte) { return byte != 0; }))
        return std::to_string(end - unread) + " bytes are left over after its fields";
    return {};
}

SwfBytes recordOf(const SwfIStream& stream, const SwfTagHeader& header, uint64_t bodyEnd) {
    return SwfBytes::share(stream.buffer(), stream.data() + header.start, static_cast<size_t>(bodyEnd - header.start));
}

// One tag with its body's bounds in force; restores the stream's outer bounds.
class BodyReader {
public:
    BodyReader(SwfIStream& stream, const SwfTagHeader& header, uint64_t listEnd)
        : _stream(stream), _header(header), _scope(stream.context), _outerEnd(stream.bodyEnd()),
          _bodyEnd(std::min({header.body + header.length, listEnd, uint64_t(stream.size())})) {
        stream.context.tagType = header.code;
        stream.context.tagSize = header.length;
        stream.context.tagLongHeader = header.isLong && header.length < 63;
        stream.context.tagMayLackNul = stream.context.fullForm && SwfTag::mayEndInText(header.code);
        stream.context.tagLacksNul = false;
        stream.setBodyEnd(_bodyEnd);
    }
    ~BodyReader() {
        _stream.setBodyEnd(_outerEnd);
        _stream.setInexact(nullptr); // nothing is inexact before the tags in a sprite, either
        _stream.alignBits();
        _stream.seek(_header.body + _header.length);
    }

    /// Null when the tag is dropped.
    std::unique_ptr<SwfTag> read() {
        const bool keepRaw = _stream.context.keepRaw;
        uint64_t offset = _header.start;
        std::string reason;
        std::unique_ptr<SwfTag> tag;
        try {
            tag = readTag(_stream);
            if (_stream.context.fullForm && !tag->isUnknown())
                takeTrailing(*tag);
            if (keepRaw && !tag->isUnknown())
                reason = loss(_stream, _bodyEnd);
            if (reason.empty())
                return finish(std::move(tag));
        } catch (const SwfException& error) {
            offset = error.offset().value_or(offset);
            reason = error.reasonInTag();
        } catch (const std::exception& error) {
            reason = error.what();
        }
        if (!keepRaw) {
            warn(_stream, _header, SwfWarning::Kind::dropped, offset, reason);
            return nullptr;
        }
        warn(_stream, _header, SwfWarning::Kind::keptRaw, offset, reason);
        _stream.seek(_header.body);
        auto unknown = std::make_unique<SwfTagUnknown>(_stream, _header.code, true);
        setHeader(*unknown, _stream.context, static_cast<uint32_t>(_bodyEnd - std::min(_bodyEnd, _header.body)));
        unknown->reason = std::move(reason);
        return finish(std::move(unknown));
    }

private:
    void takeTrailing(SwfTag& tag) {
        _stream.alignBits();
        if (_stream.bodyLeft() != 0 && _stream.bodyLeft() <= SwfTag::mostTrailing)
            tag.trailing = _stream.readRest("Trailing");
    }

    std::unique_ptr<SwfTag> finish(std::unique_ptr<SwfTag> tag) {
        tag->lacksNul = _stream.context.tagLacksNul && !tag->isUnknown();
        if (_stream.buffer() != nullptr)
            tag->source = recordOf(_stream, _header, _bodyEnd);
        return tag;
    }

    SwfIStream& _stream;
    const SwfTagHeader& _header;
    SwfTagScope _scope;
    uint64_t _outerEnd;
    uint64_t _bodyEnd;
};

} // namespace

void chooseSafeSprites() { safeSprites = true; }

std::unique_ptr<SwfTag> readTag(SwfIStream& stream) {
    static const Creators classic = makeCreators(false), full = makeCreators(true);
    const Creators& creators = stream.context.fullForm ? full : classic;
    const uint16_t code = stream.context.tagType;
    const uint32_t length = stream.context.tagSize;
    const bool raw = keptAsBytes(stream, code);
    std::unique_ptr<SwfTag> tag;
    if (!raw && code < creators.size() && creators[code] != nullptr)
        tag = creators[code](stream);
    else if (length != 0 || raw)
        tag = std::make_unique<SwfTagUnknown>(stream, code, stream.context.keepRaw);
    else
        tag = std::make_unique<SwfTag>(code);
    setHeader(*tag, stream.context, length);
    return tag;
}

bool readTagHeader(SwfIStream& stream, uint64_t end, SwfTagHeader& header) {
    header.start = stream.position();
    if (header.start + 2 > end)
        return false;
    const uint16_t word = stream.readUI16();
    header.code = word >> 6;
    header.length = word & 63;
    header.isLong = header.length == 63;
    if (header.isLong) {
        if (stream.position() + 4 > end) {
            stream.seek(header.start);
            return false;
        }
        header.length = stream.readUI32();
    }
    header.body = stream.position();
    return true;
}

void readTagList(SwfIStream& stream, uint64_t end, const std::function<void(std::unique_ptr<SwfTag>)>& append) {
    end = std::min<uint64_t>(end, stream.size());
    SwfDepthScope depth(stream.context.spriteDepth);
    SwfTagHeader header;
    std::shared_ptr<const SwfTagListReading> later;
    stream.tagPath.push_back(0);
    for (bool more = true; more && readTagHeader(stream, end, header); ++stream.tagPath.back()) {
        std::unique_ptr<SwfTag> tag;
        if (mayBeReadLater(stream, header.code)) {
            if (later == nullptr)
                later = std::make_shared<SwfTagListReading>(
                    SwfTagListReading{stream.buffer(), stream.size(), end, stream.context, stream.tagPath});
            const uint64_t next = header.body + header.length;
            SwfBytes record = recordOf(stream, header, std::min(next, end));
            tag = std::make_unique<SwfTagLater>(later, std::move(record), stream.tagPath.back());
            stream.seek(next);
        } else {
            tag = BodyReader(stream, header, end).read();
        }
        more = header.code != SwfTagCode::End;
        if (more && tag != nullptr)
            append(std::move(tag));
    }
    stream.tagPath.pop_back();
}

SwfTagLater::SwfTagLater(std::shared_ptr<const SwfTagListReading> list, SwfBytes record, uint32_t index)
    : SwfTagRecord(std::move(record)), _list(std::move(list)), _index(index) {
    constexpr uint32_t idSize = 2;
    if (isShape(type) && size >= idSize) {
        const uint8_t* id = source.data() + source.size() - size;
        _characterId = static_cast<uint16_t>(id[0] | id[1] << 8);
    }
}

std::unique_ptr<SwfTag> SwfTagLater::read(SwfWarnings* warnings, SwfScriptOutline* outline) const {
    SwfIStream stream(_list->buffer, _list->bufferSize);
    stream.context = _list->context;
    stream.context.warnings = warnings;
    stream.context.outline = _list->context.fullForm ? outline : nullptr;
    stream.tagPath = _list->path;
    stream.tagPath.back() = _index;
    stream.seek(static_cast<uint64_t>(source.data() - _list->buffer.get()));
    SwfTagHeader header;
    readTagHeader(stream, _list->end, header);
    return BodyReader(stream, header, _list->end).read();
}

} // namespace libswf
