// The actions that carry a payload.
#pragma once

#include <array>

#include "SwfAction.h"
#include "SwfStructs.h"
#include "SwfValues.h"

namespace libswf {

/// Base: writePayload both writes and, on a counting stream, measures.
class SwfPayloadAction : public SwfAction {
public:
    using SwfAction::SwfAction;
    void measure(SwfOStream& counter) override;
    void write(SwfOStream& stream) override;

protected:
    virtual void writePayload(SwfOStream& stream) = 0;
    /// The low 16 bits of a count or size, with a warning when there are more.
    void writeCut(SwfOStream& stream, uint32_t value, const char* what, const char* field) const;
};

/// GotoFrame (0x81).
class SwfActionGotoFrame : public SwfPayloadAction {
public:
    uint16_t frame = 0;

    SwfActionGotoFrame() : SwfPayloadAction(SwfActionCode::GoToFrame) {}
    explicit SwfActionGotoFrame(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// GetURL (0x83).
class SwfActionGetURL : public SwfPayloadAction {
public:
    SwfString url, target;

    SwfActionGetURL() : SwfPayloadAction(SwfActionCode::GetURL) {}
    explicit SwfActionGetURL(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// StoreRegister (0x87).
class SwfActionStoreRegister : public SwfPayloadAction {
public:
    uint8_t registerNumber = 0;

    SwfActionStoreRegister() : SwfPayloadAction(SwfActionCode::StoreRegister) {}
    explicit SwfActionStoreRegister(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// ConstantPool (0x88): at most 65,535 strings (code 2).
class SwfActionConstantPool : public SwfPayloadAction {
public:
    SwfStrings constants;

    SwfActionConstantPool() : SwfPayloadAction(SwfActionCode::ConstantPool) {}
    explicit SwfActionConstantPool(SwfIStream& stream);
    void write(SwfOStream& stream) override;

protected:
    void writePayload(SwfOStream& stream) override;
};

/// WaitForFrame (0x8A).
class SwfActionWaitForFrame : public SwfPayloadAction {
public:
    uint16_t frame = 0;
    uint8_t skipCount = 0; ///< in actions

    SwfActionWaitForFrame() : SwfPayloadAction(SwfActionCode::WaitForFrame) {}
    explicit SwfActionWaitForFrame(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// SetTarget (0x8B).
class SwfActionSetTarget : public SwfPayloadAction {
public:
    SwfString targetName;

    SwfActionSetTarget() : SwfPayloadAction(SwfActionCode::SetTarget) {}
    explicit SwfActionSetTarget(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// GoToLabel (0x8C).
class SwfActionGoToLabel : public SwfPayloadAction {
public:
    SwfString label;

    SwfActionGoToLabel() : SwfPayloadAction(SwfActionCode::GoToLabel) {}
    explicit SwfActionGoToLabel(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// WaitForFrame2 (0x8D).
class SwfActionWaitForFrame2 : public SwfPayloadAction {
public:
    uint8_t skipCount = 0; ///< in actions

    SwfActionWaitForFrame2() : SwfPayloadAction(SwfActionCode::WaitForFrame2) {}
    explicit SwfActionWaitForFrame2(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// Push (0x96).
class SwfActionPush : public SwfPayloadAction {
public:
    SwfValues values;

    SwfActionPush() : SwfPayloadAction(SwfActionCode::Push) {}
    explicit SwfActionPush(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// Base of Jump and If. The offset is in bytes from the end of the record and stays as it is, whatever happens to the
/// actions it passes over.
class SwfActionBranch : public SwfPayloadAction {
public:
    int16_t branchOffset = 0;

protected:
    using SwfPayloadAction::SwfPayloadAction;
    void read(SwfIStream& stream);
    void writePayload(SwfOStream& stream) override;
};

/// Jump (0x99).
class SwfActionJump : public SwfActionBranch {
public:
    SwfActionJump() : SwfActionBranch(SwfActionCode::Jump) {}
    explicit SwfActionJump(SwfIStream& stream) : SwfActionJump() { read(stream); }
};

/// If (0x9D).
class SwfActionIf : public SwfActionBranch {
public:
    SwfActionIf() : SwfActionBranch(SwfActionCode::If) {}
    explicit SwfActionIf(SwfIStream& stream) : SwfActionIf() { read(stream); }
};

/// GetURL2 (0x9A). The full form has the bits where players read them; the classic form departs from that on purpose,
/// and has no XML form for reserved bits and method 3: such records are kept raw under keepRaw.
class SwfActionGetURL2 : public SwfPayloadAction {
public:
    struct Bits {
        uint8_t loadVariables, loadTarget;
        uint32_t methodShift; ///< of two bits
    };
    static constexpr Bits bits(bool fullForm) { return fullForm ? Bits{0x80, 0x40, 0} : Bits{0x01, 0x02, 6}; }
    static constexpr uint8_t reserved = 0x3C, highestMethod = 3;
    static constexpr uint32_t reservedShift = 2;

    uint8_t flags = 0; ///< the method: 0 none, 1 GET, 2 POST

    SwfActionGetURL2() : SwfPayloadAction(SwfActionCode::GetURL2) {}
    explicit SwfActionGetURL2(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// GotoFrame2 (0x9F). The full form has the bits where players read them; the classic form departs from that on
/// purpose, and writes the bias only when it is not 0.
class SwfActionGotoFrame2 : public SwfPayloadAction {
public:
    struct Bits {
        uint8_t play, sceneBias; ///< the latter says that a bias follows
    };
    static constexpr Bits bits(bool fullForm) { return fullForm ? Bits{0x01, 0x02} : Bits{0x80, 0x40}; }
    static constexpr uint8_t highestReserved = 0x3F;

    bool play = false;
    uint16_t sceneBias = 0;
    bool hasSceneBias = false; ///< full form: a bias of 0 is written, too
    uint8_t reserved = 0;      ///< full form: the six bits above

    SwfActionGotoFrame2() : SwfPayloadAction(SwfActionCode::GoToFrame2) {}
    explicit SwfActionGotoFrame2(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// Base of the actions whose body follows the record, outside its Length. The constructors from SwfIStream read the
/// record only; readAction and the lists read the body.
class SwfActionBlock : public SwfPayloadAction {
public:
    SwfActions body;
    uint16_t codeSize = 0; ///< bytes of the body as read; worked out anew on write

    void write(SwfOStream& stream) override;

protected:
    using SwfPayloadAction::SwfPayloadAction;
    void readCodeSize(SwfIStream& stream);
    void writeBody(SwfOStream& stream);
};

/// DefineFunction (0x9B): at most 65,535 parameters and 65,535 bytes of body (code 2).
class SwfActionDefineFunction : public SwfActionBlock {
public:
    SwfString functionName;
    SwfStrings parameters;

    SwfActionDefineFunction() : SwfActionBlock(SwfActionCode::DefineFunction) {}
    explicit SwfActionDefineFunction(SwfIStream& stream);
    void write(SwfOStream& stream) override;

protected:
    void writePayload(SwfOStream& stream) override;
};

/// REGISTERPARAM.
struct SwfRegisterParam {
    uint8_t registerNumber = 0; ///< 0: the parameter is a named variable
    SwfString name;
};
using SwfRegisterParams = SwfVector<SwfRegisterParam>;

/// DefineFunction2 (0x8E). Counts and sizes over 65,535 are cut to 16 bits. Flag bits from 0x0200 on are kept here but
/// have no XML form.
class SwfActionDefineFunction2 : public SwfActionBlock {
public:
    SwfString functionName;
    uint8_t registerCount = 0;
    uint16_t flags = 0;
    SwfRegisterParams parameters;

    SwfActionDefineFunction2() : SwfActionBlock(SwfActionCode::DefineFunction2) {}
    explicit SwfActionDefineFunction2(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// With (0x94). A body over 65,535 bytes has its size cut to 16 bits.
class SwfActionWith : public SwfActionBlock {
public:
    SwfActionWith() : SwfActionBlock(SwfActionCode::With) {}
    explicit SwfActionWith(SwfIStream& stream);

protected:
    void writePayload(SwfOStream& stream) override;
};

/// Try (0x8F). In the full form, as players read it, the three sizes come first and Length leaves the bodies out. The
/// classic form departs from that on purpose: the register or name comes first, the flags are other bits, and Length
/// counts the bodies; records of the other layout are kept raw under keepRaw, and their bodies then follow as ordinary
/// actions. Each body holds at most 65,535 bytes (code 2). The constructor from SwfIStream reads the fields; readAction
/// and the lists read the bodies.
class SwfActionTry : public SwfPayloadAction {
public:
    struct Bits {
        uint8_t catchBlock, finallyBlock, catchInRegister, reserved;
    };
    static constexpr Bits bits(bool fullForm) {
        return fullForm ? Bits{0x01, 0x02, 0x04, 0xF8} : Bits{0x80, 0x40, 0x20, 0x1F};
    }
    static constexpr uint32_t reservedShift = 3, highestReserved = 0x1F; ///< in the full form

    bool catchInRegister = false; ///< catchRegister holds; else catchName
    SwfString catchName;
    uint8_t catchRegister = 0;
    uint8_t flags = 0;
    SwfActions tryBody, catchBody, finallyBody;
    uint16_t trySize = 0, catchSize = 0, finallySize = 0; ///< bytes of the bodies as read; worked out anew on write

    /// Bytes of the payload in front of the bodies.
    uint32_t headSize() const { return 7 + (catchInRegister ? 1 : catchName.getSize(true)); }
    bool hasCatch(bool fullForm) const { return (flags & bits(fullForm).catchBlock) != 0; }
    bool hasFinally(bool fullForm) const { return (flags & bits(fullForm).finallyBlock) != 0; }

    SwfActionTry() : SwfPayloadAction(SwfActionCode::Try) {}
    explicit SwfActionTry(SwfIStream& stream);
    void write(SwfOStream& stream) override;

protected:
    void writePayload(SwfOStream& stream) override;

private:
    void readNameOrRegister(SwfIStream& stream);
    void readSizes(SwfIStream& stream);
    void writeNameOrRegister(SwfOStream& stream);
    void writeSizes(SwfOStream& stream);
};

/// The lists that an action holds, in the order of their bytes, with null for those it lacks. They end the record.
std::array<SwfActions*, 3> bodiesOf(SwfAction& action);

} // namespace libswf
