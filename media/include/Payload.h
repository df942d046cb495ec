// The data that a tag carries as a file: taken out, and put in its place.
//
// Functions throw libswf::SwfException as ImageCodec.h and SoundCodec.h say.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "SoundCodec.h"
#include "SwfTags.h"
#include "SwfTagsBitmap.h"

namespace zelk {

/// What a tag's data needs beside the tag.
struct PayloadContext {
    const libswf::SwfTagJPEGTables* tables = nullptr; ///< of the movie, for DefineBits; may be null
    SoundBlocks blocks;                               ///< of a SoundStreamHead
};

struct Payload {
    std::vector<uint8_t> bytes;
    std::string extension; ///< without a dot: "png"
    std::string note;      ///< what the user should know of the file; mostly empty
};

/// The tag is of a kind that carries a payload, and has one. A SoundStreamHead has one when it has blocks.
bool hasPayload(const libswf::SwfTag& tag, const PayloadContext& context);

/// Bitmaps as JPEG, GIF or PNG, sounds as MP3 or WAV; everything else, and sounds that nothing here decodes, as they
/// are. Throws code 2 for a tag without a payload.
Payload exportPayload(const libswf::SwfTag& tag, const PayloadContext& context);

/// Called with a tag, its place ("4.2" for the third tag inside the fifth) and what its data needs.
using PayloadVisitor =
    std::function<void(const libswf::SwfTag& tag, const std::string& place, const PayloadContext& context)>;
/// Visits every tag of a movie that has a payload, those inside sprites included.
void forEachPayload(const libswf::SwfTags& tags, const PayloadVisitor& visit);

/// "12-DefineBitsJPEG3.png". `place` stands for the id of a tag that has none.
std::string payloadFileName(const libswf::SwfTag& tag, const std::string& place, const std::string& extension);

/// The kinds of file that a tag takes, as extensions without a dot; "*" for any file. Empty when its payload cannot be
/// replaced.
std::vector<std::string> importKinds(const libswf::SwfTag& tag);

struct ImportedPayload {
    std::shared_ptr<libswf::SwfTag> tag; ///< of the same character, not always of the same code; null for no change
    std::string note;                    ///< what else is not as it was, or why nothing changes; may be empty
};

/// A tag like this one with a file's content for its payload. Null when the tag has just this content.
ImportedPayload importPayload(const libswf::SwfTag& tag, const PayloadContext& context, std::span<const uint8_t> file);

} // namespace zelk
