// Tags that set up the movie or mark its timeline.
#pragma once

#include <array>
#include <optional>

#include "SwfTag.h"

namespace libswf {

/// SetBackgroundColor (9): RGB.
class SwfTagSetBackgroundColor : public SwfTag {
public:
    SwfColor color;

    SwfTagSetBackgroundColor() : SwfTag(9) {}
    explicit SwfTagSetBackgroundColor(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// Protect (24): authoring tools refuse to open the movie, or ask for the password.
/// Some tools put a reserved UI16 of 0 in front of the password, as EnableDebugger2 has it. The full form reads it; the
/// classic one shows such a tag with an empty password, and its other bytes count as left over.
class SwfTagProtect : public SwfTag {
public:
    bool hasReserved = false; ///< full form: a UI16 of 0 stands in front of the password
    bool hasPassword = false; ///< false: the body is empty
    SwfString password;       ///< MD5 text

    SwfTagProtect() : SwfTag(24) {}
    explicit SwfTagProtect(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// FrameLabel (43). In the classic form an import table (57) read from a file becomes one as well, its URL being the
/// label.
class SwfTagFrameLabel : public SwfTag {
public:
    SwfString name;
    bool isAnchor = false;             ///< the name can stand behind # in a page's address; one byte 1 after the name
    std::optional<uint8_t> anchorByte; ///< full form: the byte, where it is another one

    SwfTagFrameLabel() : SwfTag(43) {}
    explicit SwfTagFrameLabel(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// EnableDebugger (58), of SWF 5.
class SwfTagEnableDebugger : public SwfTag {
public:
    SwfString password; ///< MD5 text

    SwfTagEnableDebugger() : SwfTag(58) {}
    explicit SwfTagEnableDebugger(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// EnableDebugger2 (64), of SWF 6 on. The UI16 in front of the password is reserved, and ignored by players: compilers
/// of ActionScript 3 write 6517 there. The full form keeps it; the classic one writes 0 whatever was read.
class SwfTagEnableDebugger2 : public SwfTag {
public:
    uint16_t reserved = 0;
    SwfString password; ///< MD5 text

    SwfTagEnableDebugger2() : SwfTag(64) {}
    explicit SwfTagEnableDebugger2(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// ScriptLimits (65).
class SwfTagScriptLimits : public SwfTag {
public:
    uint16_t maxRecursionDepth = 0;
    uint16_t scriptTimeoutSeconds = 0;

    SwfTagScriptLimits() : SwfTag(65) {}
    explicit SwfTagScriptLimits(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// SetTabIndex (66).
class SwfTagSetTabIndex : public SwfTag {
public:
    uint16_t depth = 0;
    uint16_t tabIndex = 0;

    SwfTagSetTabIndex() : SwfTag(66) {}
    explicit SwfTagSetTabIndex(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// FileAttributes (69). A body shorter than 4 bytes is read as if zeros followed; 4 are always written, because players
/// refuse a movie whose tag has fewer.
class SwfTagFileAttributes : public SwfTag {
public:
    enum Flag : uint32_t {
        useNetwork = 0x01,
        actionScript3 = 0x08,
        hasMetadata = 0x10,
        useGPU = 0x20,
        useDirectBlit = 0x40,
        named = useNetwork | actionScript3 | hasMetadata | useGPU | useDirectBlit
    };
    uint32_t flags = 0; ///< the body as one number; the bits outside `named` are reserved and kept

    SwfTagFileAttributes() : SwfTag(69) {}
    explicit SwfTagFileAttributes(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// ProductInfo (41): the compiler that made the movie. Full form only.
class SwfTagProductInfo : public SwfTag {
public:
    uint32_t productId = 0, edition = 0;
    uint8_t majorVersion = 0, minorVersion = 0;
    uint32_t buildLow = 0, buildHigh = 0;
    uint64_t compilationDate = 0; ///< milliseconds since 1970-01-01 UTC

    SwfTagProductInfo() : SwfTag(41) {}
    explicit SwfTagProductInfo(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DebugID (63): tells a debugger which file belongs to the movie. Full form only.
class SwfTagDebugID : public SwfTag {
public:
    std::array<uint8_t, 16> uuid{};

    SwfTagDebugID() : SwfTag(63) {}
    explicit SwfTagDebugID(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// EnableTelemetry (93): lets a profiler attach. Full form only.
class SwfTagEnableTelemetry : public SwfTag {
public:
    uint16_t reserved = 0;
    bool hasPasswordHash = false;
    std::array<uint8_t, 32> passwordHash{}; ///< SHA-256

    SwfTagEnableTelemetry() : SwfTag(93) {}
    explicit SwfTagEnableTelemetry(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// Metadata (77).
class SwfTagMetadata : public SwfTag {
public:
    SwfString data; ///< an RDF document

    SwfTagMetadata() : SwfTag(77) {}
    explicit SwfTagMetadata(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

struct SwfScene {
    uint32_t offset = 0; ///< its first frame, from 0
    SwfString name;
};

/// A label as DefineSceneAndFrameLabelData lists it.
struct SwfSceneFrameLabel {
    uint32_t frameNum = 0; ///< from 0
    SwfString frameLabel;
};

/// DefineSceneAndFrameLabelData (86). All numbers are EncodedU32, the counts included.
class SwfTagDefineSceneAndFrameLabelData : public SwfTag {
public:
    SwfVector<SwfScene> scenes;
    SwfVector<SwfSceneFrameLabel> frameLabels;

    SwfTagDefineSceneAndFrameLabelData() : SwfTag(86) {}
    explicit SwfTagDefineSceneAndFrameLabelData(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
