// ActionScript 1 and 2 bytecode: the base of all actions, and their lists.
#pragma once

#include <memory>
#include <string>

#include "SwfBytes.h"
#include "SwfObject.h"
#include "SwfPooled.h"
#include "SwfStream.h"
#include "SwfVector.h"

namespace libswf {

/// SwfActionCode::GoToFrame and so on, from the one table of actions.
namespace SwfActionCode {
enum : uint32_t {
#define SWF_ACTION(code, name) name = code,
#define SWF_PAYLOAD_ACTION(code, name, type) name = code,
#include "SwfActions.def"
    /// Pseudo code of a block that is written without a record header. Never read from a file.
    compiled = 0xFFFFF
};
} // namespace SwfActionCode

/// One action record; by itself an action of any code without payload. A concrete action reads its payload in a
/// constructor from SwfIStream: the record header has been read, its code and Length stand in the stream's context.
/// `size` is the length of the payload in bytes, nested lists included.
///
/// A Length over 65,535 is cut to its low 16 bits. Departure from the published format, kept on purpose in the classic
/// form: a record of code 0x80 is read with a Length field and written without one.
class SwfAction : public SwfStruct, public SwfPooled {
public:
    uint32_t type; ///< action code, 0 to 255, or SwfActionCode::compiled

    explicit SwfAction(uint32_t code) : type(code) {}
    virtual ~SwfAction() = default;
    SwfAction(const SwfAction&) = delete;
    SwfAction& operator=(const SwfAction&) = delete;

    /// Bytes of the payload, also kept in `size`: what `measure` counts.
    virtual uint32_t getSize(SwfContext& context);
    /// The same on a counter that others share, as lists measure.
    virtual void measure(SwfOStream& counter);
    /// Header and payload, with the size that was measured. Throws SwfException code 2, with nothing written, for what
    /// the record cannot hold.
    virtual void write(SwfOStream& stream);

    /// Bytes of the record header.
    uint32_t headerSize(const SwfContext& context) const {
        return type == SwfActionCode::compiled ? 0 : hasLength(context) ? 3 : 1;
    }

protected:
    void writeHeader(SwfOStream& stream, uint32_t length) const {
        if (type == SwfActionCode::compiled)
            return;
        stream.writeUI8(static_cast<uint8_t>(type));
        if (!hasLength(stream.context))
            return;
        stream.writeUI16(static_cast<uint16_t>(length));
        if (length > UINT16_MAX) [[unlikely]]
            warnOfCut(stream.context, length, "bytes", "its Length");
    }
    void warnOfCut(const SwfContext& context, uint32_t value, const char* what, const char* field) const;

private:
    bool hasLength(const SwfContext& context) const { return context.fullForm ? type >= 0x80 : type > 0x80; }
};

/// An ordered, owning list of actions. Nothing adds a terminating End: it is an action like any other.
class SwfActions : public SwfPtrVector<SwfAction*> {
public:
    /// Bytes of the list as getSize last found them.
    uint32_t byteSize = 0;

    /// Reads up to and including the first End, or to the end of the tag's body. In the full form always to the end of
    /// the body: players reach what stands behind an End by branches.
    void readUntilEnd(SwfIStream& stream);
    /// Reads the actions that start within the next `length` bytes, but none at or after the end of the tag's body. The
    /// last one may end later, unless the context says keepRaw: then the stream is marked inexact.
    void readSized(SwfIStream& stream, uint64_t length);

    /// Measures every action, nested ones too, once. Throws SwfException code 2 for more than 4 GB.
    uint32_t getSize(SwfContext& context);
    /// Writes every action with the size that getSize found.
    void write(SwfOStream& stream) const;
    /// For the writeBody of a tag: on a counter adds the measured size, else writes with the sizes measured before, so
    /// that nested lists are measured once.
    void measureOrWrite(SwfOStream& stream);

private:
    void measure(SwfOStream& counter);
};

/// An action kept as bytes: of a code without a class, or one that its class cannot hold.
/// Data under a code below 0x80 cannot be written (SwfException code 2), since such records have no Length.
class SwfActionUnknown : public SwfAction {
public:
    SwfBytes data;

    SwfActionUnknown(uint32_t code, SwfBytes bytes) : SwfAction(code), data(std::move(bytes)) {}
    /// Takes the Length bytes of the record.
    explicit SwfActionUnknown(SwfIStream& stream);

    void measure(SwfOStream& counter) override;
    void write(SwfOStream& stream) override;
};

/// Actions that are bytes already: records one behind the other, as they stand in a file. Its XML form says nothing of
/// them.
class SwfActionCompiled : public SwfAction {
public:
    SwfBytes records;

    explicit SwfActionCompiled(SwfBytes bytes) : SwfAction(SwfActionCode::compiled), records(std::move(bytes)) {}

    void measure(SwfOStream& counter) override;
    void write(SwfOStream& stream) override { stream.writeBytes(records.span()); }
};

/// The factory: reads the next action, nested lists included. The work is linear in the bytes read, whatever they hold.
/// - One that its class cannot give back is kept as SwfActionUnknown, with a warning, when the context says keepRaw.
///   One whose Length passes the end of the tag's body then marks the stream inexact and ends the reading.
/// - Without keepRaw the classes read their fields whatever Length says: texts end with the tag's body at the latest,
///   and the last action may pass it. The next action stands where Length says. Actions that together read more than
///   the body again in this way (and more than 1 KB) throw SwfException code 3.
/// - Lists nested deeper than SwfContext::maxDepth are kept raw in either case.
std::unique_ptr<SwfAction> readAction(SwfIStream& stream);

/// "GetURL" for 0x83, "Action 1" for a code without a name.
std::string actionName(uint32_t code);

} // namespace libswf
