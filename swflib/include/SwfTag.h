// Base classes of the tags.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "SwfBytes.h"
#include "SwfObject.h"
#include "SwfStream.h"
#include "SwfStructs.h"
#include "SwfTagCodes.h"

namespace libswf {

class SwfTagLater;

/// One tag record; by itself a tag of any code with an empty body. A concrete tag reads itself in a constructor from
/// SwfIStream (its body starts at the stream's position and ends at bodyEnd()) and writes itself in writeBody, which
/// also measures it.
class SwfTag : public SwfStruct {
public:
    bool longHeader = false; ///< the header takes 6 bytes although a short one would do
    bool lacksNul = false;   ///< full form: the text that the body ends with has no NUL behind it
    SwfBytes trailing;       ///< full form: bytes of the body behind its fields, which players do not read
    static constexpr uint32_t mostTrailing = 256; ///< a tag with more is kept as bytes
    uint16_t type = 0;                            ///< tag code, 0 to 1023

    explicit SwfTag(uint16_t code) : type(code) {}
    virtual ~SwfTag() = default;
    SwfTag(const SwfTag&) = delete;
    SwfTag& operator=(const SwfTag&) = delete;

    /// Defines a character that other tags look up by id.
    virtual bool isDefinition() const { return false; }
    virtual bool isUnknown() const { return false; }
    virtual bool isSafe() const { return false; }
    virtual uint16_t definitionId() const { return 0; }
    /// Not null for a tag that was not read yet.
    virtual const SwfTagLater* later() const { return nullptr; }

    /// Length of the body in bytes, also kept in `size`.
    virtual uint32_t getSize(SwfContext& context);
    /// Header and body. The body is written with the size that getSize found: call getSize first.
    virtual void write(SwfOStream& stream);

    bool hasLongHeader() const { return size >= 63 || longHeader; }
    uint32_t headerSize() const { return hasLongHeader() ? longHeaderSize : shortHeaderSize; }
    static constexpr uint32_t shortHeaderSize = 2, longHeaderSize = 6; ///< in bytes
    /// Of the header that a record begins with, or of what there is of one.
    static size_t headerSize(std::span<const uint8_t> record);
    /// Bodies of this code may end with a text.
    static bool mayEndInText(uint16_t code);

    /// The record as it stood in the file, header included; empty for a tag that was not read from a shared buffer.
    SwfBytes source;

protected:
    virtual void writeBody(SwfOStream&) {}
    void writeHeader(SwfOStream& stream) const;

private:
    void writeWithoutNul(SwfOStream& stream);
};

/// A tag that defines a character.
class SwfDefinitionTag : public SwfTag {
public:
    using SwfTag::SwfTag;
    uint16_t characterId = 0;

    bool isDefinition() const override { return true; }
    uint16_t definitionId() const override { return characterId; }
};

/// Closes a tag list. Lists drop it on reading and write exactly one.
class SwfTagEnd : public SwfTag {
public:
    SwfTagEnd() : SwfTag(0) {}
    explicit SwfTagEnd(SwfIStream&) : SwfTagEnd() {}
};

class SwfTagShowFrame : public SwfTag {
public:
    SwfTagShowFrame() : SwfTag(1) {}
    explicit SwfTagShowFrame(SwfIStream&) : SwfTagShowFrame() {}
};

/// A tag kept as bytes: of a code without a form of its own, or one that its form cannot hold.
class SwfTagUnknown : public SwfDefinitionTag {
public:
    bool hasCharacterId = false; ///< the first two bytes of the body are kept in characterId
    SwfBytes data;               ///< the body, without the character id
    std::string reason;          ///< why a tag whose code has a form is kept as bytes; empty for other codes

    explicit SwfTagUnknown(uint16_t code) : SwfDefinitionTag(code) {}
    /// Takes the rest of the body. Throws code 3 when the data is shorter than the declared length, unless
    /// `takeWhatIsThere`.
    SwfTagUnknown(SwfIStream& stream, uint16_t code, bool takeWhatIsThere);
    /// A body given as bytes.
    SwfTagUnknown(uint16_t code, SwfBytes body);

    /// Bodies of this code start with a character id. Holds for some codes without one (86), which loses nothing.
    static bool carriesCharacterId(uint16_t code);

    bool isDefinition() const override { return hasCharacterId; }
    bool isUnknown() const override { return true; }

protected:
    void writeBody(SwfOStream& stream) override;

private:
    void splitCharacterId();
};

/// A record that is given back as it stood in its file, header included.
class SwfTagRecord : public SwfTag {
public:
    /// The record is kept in `source`. Its header decides code and length; one cut short by the end of its file gets a
    /// header of its true length.
    explicit SwfTagRecord(SwfBytes record);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
