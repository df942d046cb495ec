// The state that decides how a record is laid out, carried by both streams and handed to every getSize.
#pragma once

#include <cstdint>

namespace libswf {

class SwfTags;
class SwfWarnings;
struct SwfScriptOutline;

/// Switches that a tag sets for its own body. SwfTagScope gives each tag a copy of its own.
struct SwfTagState {
    uint16_t tagType = 0;       ///< code of the tag being read or written
    uint32_t tagSize = 0;       ///< length of its body in bytes
    bool tagLongHeader = false; ///< reading: the header was long although the length is below 63
    bool tagMayLackNul = false; ///< reading, full form: the NUL of a text that ends the body may be missing
    bool tagLacksNul = false;   ///< and is

    uint64_t readAgain = 0; ///< reading: bytes that actions took from behind their Length

    bool alpha = false;            ///< colours are RGBA, colour transforms carry alpha terms
    bool extendedCounts = false;   ///< a style count of 255 or more may use the 0xFF escape
    bool newStylesAllowed = false; ///< a style change may carry new style arrays
    bool lineStyle2Mode = false;   ///< line style arrays hold LINESTYLE2
    bool cutIndices = false;       ///< a shape record's style index is cut to its width instead of refused (glyphs)
    bool widenIndices = false; ///< full form: the widths grow with the indices (end edges of morphs, without styles)
    uint8_t numFillBits = 0;   ///< width of fill indices, 0 to 15
    uint8_t numLineBits = 0;   ///< width of line indices, 0 to 15
    uint8_t glyphBits = 0;     ///< width of glyph indices, 0 to 255 as the file says
    uint8_t advanceBits = 0;   ///< width of glyph advances, 0 to 255 as the file says
};

struct SwfContext : SwfTagState {
    uint8_t version = 0; ///< SWF version of the movie
    /// The form of the movie's XML: layouts are those that players read; otherwise Zelk's own where the two differ
    /// (docs/differences.md).
    bool fullForm = false;
    const SwfTags* tags = nullptr; ///< the movie's top-level list, to look up definitions; may be null

    /// Kerning codes are UI16. Not part of the per-tag state: a DefineFont3 is read with what the DefineFont2 before it
    /// left here.
    bool wideKerningCodes = false;

    bool readLater = false;          ///< reading: scripts and shapes stay bytes until they are asked for
    bool keepRaw = false;            ///< keep as bytes what the object model cannot give back
    SwfWarnings* warnings = nullptr; ///< where warnings go; may be null
    /// Reading with keepRaw, full form: receives the outline of the list of actions read last; may be null.
    SwfScriptOutline* outline = nullptr;
    uint16_t spriteDepth = 0;  ///< nesting of tag lists, at most maxDepth
    uint16_t actionDepth = 0;  ///< nesting of action lists, at most maxDepth
    uint8_t actionCode = 0;    ///< code of the action being read
    uint16_t actionLength = 0; ///< Length of its record, in bytes
    static constexpr uint16_t maxDepth = 256;
};

/// Restores the per-tag state when a tag's body has been read, measured or written, also on exceptions.
class SwfTagScope {
public:
    explicit SwfTagScope(SwfContext& context) : _context(context), _saved(context) {}
    ~SwfTagScope() { static_cast<SwfTagState&>(_context) = _saved; }
    SwfTagScope(const SwfTagScope&) = delete;
    SwfTagScope& operator=(const SwfTagScope&) = delete;

private:
    SwfContext& _context;
    SwfTagState _saved;
};

/// Counts one level of nesting for as long as it lives.
class SwfDepthScope {
public:
    explicit SwfDepthScope(uint16_t& depth) : _depth(depth) { ++_depth; }
    ~SwfDepthScope() { --_depth; }
    SwfDepthScope(const SwfDepthScope&) = delete;
    SwfDepthScope& operator=(const SwfDepthScope&) = delete;

private:
    uint16_t& _depth;
};

} // namespace libswf
