// Tags that name, share or carry assets.
#pragma once

#include "SwfTag.h"

namespace libswf {

/// A character and the name that it has outside the movie, or that of its class.
struct SwfAsset {
    uint16_t id = 0;
    SwfString name;
};

/// At most 65,535 entries: writing more throws SwfException code 2.
using SwfAssets = SwfVector<SwfAsset>;

/// ExportAssets (56).
class SwfTagExportAssets : public SwfTag {
public:
    SwfAssets assets;

    SwfTagExportAssets() : SwfTag(56) {}
    explicit SwfTagExportAssets(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// ImportAssets (57). In the classic form built from XML only: the tag list's reader makes a FrameLabel of code 57.
class SwfTagImportAssets : public SwfTag {
public:
    SwfString url; ///< the movie that exports the assets
    SwfAssets assets;

    SwfTagImportAssets() : SwfTag(57) {}
    explicit SwfTagImportAssets(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// ImportAssets2 (71), of SWF 8 on: two reserved bytes, 1 and 0, follow the URL. With a second byte other than 0 the
/// layout is another one (a digest follows), which is refused with code 3. The full form keeps the first byte.
class SwfTagImportAssets2 : public SwfTag {
public:
    SwfString url;        ///< the movie that exports the assets
    uint8_t reserved = 1; ///< the first of the two bytes
    SwfAssets assets;

    SwfTagImportAssets2() : SwfTag(71) {}
    explicit SwfTagImportAssets2(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// SymbolClass (76): the ActionScript 3 class of each character; id 0 is the movie itself.
class SwfTagSymbolClass : public SwfTag {
public:
    SwfAssets symbols;

    SwfTagSymbolClass() : SwfTag(76) {}
    explicit SwfTagSymbolClass(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// FreeCharacter (3): the character is not used any more. Full form only.
class SwfTagFreeCharacter : public SwfTag {
public:
    uint16_t characterId = 0;

    SwfTagFreeCharacter() : SwfTag(3) {}
    explicit SwfTagFreeCharacter(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// NameCharacter (40): what an authoring tool calls a character. Full form only.
class SwfTagNameCharacter : public SwfTag {
public:
    uint16_t characterId = 0;
    SwfString name;

    SwfTagNameCharacter() : SwfTag(40) {}
    explicit SwfTagNameCharacter(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DefineScalingGrid (78). Its id is that of another tag's character, so it is no definition.
class SwfTagDefineScalingGrid : public SwfTag {
public:
    uint16_t characterId = 0; ///< of a sprite or button
    SwfRect splitter;         ///< the middle of the nine fields, in twips

    SwfTagDefineScalingGrid() : SwfTag(78) {}
    explicit SwfTagDefineScalingGrid(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DoABC (82).
class SwfTagDoABC : public SwfTag {
public:
    uint32_t flags = 0; ///< bit 0: do not run the block before its first use
    SwfString name;
    SwfBytes abcData;

    SwfTagDoABC() : SwfTag(82) {}
    explicit SwfTagDoABC(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DoABCDefine (72): a DoABC without a head. Full form only.
class SwfTagDoABCDefine : public SwfTag {
public:
    SwfBytes abcData;

    SwfTagDoABCDefine() : SwfTag(72) {}
    explicit SwfTagDoABCDefine(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DefineBinaryData (87). The UI32 after the id is reserved: kept in the full form, in the classic one written as 0.
class SwfTagDefineBinaryData : public SwfDefinitionTag {
public:
    uint32_t reserved = 0;
    SwfBytes data;

    SwfTagDefineBinaryData() : SwfDefinitionTag(87) {}
    explicit SwfTagDefineBinaryData(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
