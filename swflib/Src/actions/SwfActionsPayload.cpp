#include "SwfActionsPayload.h"

#include "SwfActionRefusal.h"

namespace libswf {

namespace {

// Bounds counts from the file: no item starts at or after the end of the payload, or without keepRaw of the tag's body.
bool startsItem(SwfIStream& stream, const char* field) {
    if (stream.bodyLeft() != 0)
        return true;
    refuse(stream, field, "the action ends before all items that its count promises");
    return false;
}

void checkCount(uint64_t count, const char* what) {
    if (count > UINT16_MAX)
        throw SwfException(SwfError::doesNotFit, std::string(what) + ": more than 65,535");
}

} // namespace

void SwfPayloadAction::measure(SwfOStream& counter) {
    const uint64_t start = counter.written();
    writePayload(counter);
    const uint64_t payload = counter.written() - start;
    if (payload > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "a record of more than 4 GB");
    size = static_cast<uint32_t>(payload);
}

void SwfPayloadAction::write(SwfOStream& stream) {
    writeHeader(stream, size);
    writePayload(stream);
}

void SwfPayloadAction::writeCut(SwfOStream& stream, uint32_t value, const char* what, const char* field) const {
    stream.writeUI16(static_cast<uint16_t>(value));
    if (value > UINT16_MAX && !stream.isCounter())
        warnOfCut(stream.context, value, what, field);
}

SwfActionGotoFrame::SwfActionGotoFrame(SwfIStream& stream) : SwfActionGotoFrame() { frame = stream.readUI16("Frame"); }

void SwfActionGotoFrame::writePayload(SwfOStream& stream) { stream.writeUI16(frame); }

SwfActionGetURL::SwfActionGetURL(SwfIStream& stream) : SwfActionGetURL() {
    stream.readString(url, "UrlString");
    stream.readString(target, "TargetString");
}

void SwfActionGetURL::writePayload(SwfOStream& stream) {
    url.write(stream, true);
    target.write(stream, true);
}

SwfActionStoreRegister::SwfActionStoreRegister(SwfIStream& stream) : SwfActionStoreRegister() {
    registerNumber = stream.readUI8("RegisterNumber");
}

void SwfActionStoreRegister::writePayload(SwfOStream& stream) { stream.writeUI8(registerNumber); }

SwfActionConstantPool::SwfActionConstantPool(SwfIStream& stream) : SwfActionConstantPool() {
    const uint16_t count = stream.readUI16("Count");
    for (uint32_t i = 0; i < count && startsItem(stream, "ConstantPool"); ++i)
        stream.readString(constants.append({}), "ConstantPool");
}

void SwfActionConstantPool::writePayload(SwfOStream& stream) {
    stream.writeUI16(static_cast<uint16_t>(constants.size()));
    for (const SwfString& constant : constants)
        constant.write(stream, true);
}

void SwfActionConstantPool::write(SwfOStream& stream) {
    checkCount(constants.size(), "ConstantPool > Count");
    SwfPayloadAction::write(stream);
}

SwfActionWaitForFrame::SwfActionWaitForFrame(SwfIStream& stream) : SwfActionWaitForFrame() {
    frame = stream.readUI16("Frame");
    skipCount = stream.readUI8("SkipCount");
}

void SwfActionWaitForFrame::writePayload(SwfOStream& stream) {
    stream.writeUI16(frame);
    stream.writeUI8(skipCount);
}

SwfActionSetTarget::SwfActionSetTarget(SwfIStream& stream) : SwfActionSetTarget() {
    stream.readString(targetName, "TargetName");
}

void SwfActionSetTarget::writePayload(SwfOStream& stream) { targetName.write(stream, true); }

SwfActionGoToLabel::SwfActionGoToLabel(SwfIStream& stream) : SwfActionGoToLabel() { stream.readString(label, "Label"); }

void SwfActionGoToLabel::writePayload(SwfOStream& stream) { label.write(stream, true); }

SwfActionWaitForFrame2::SwfActionWaitForFrame2(SwfIStream& stream) : SwfActionWaitForFrame2() {
    skipCount = stream.readUI8("SkipCount");
}

void SwfActionWaitForFrame2::writePayload(SwfOStream& stream) { stream.writeUI8(skipCount); }

SwfActionPush::SwfActionPush(SwfIStream& stream) : SwfActionPush() {
    const uint64_t end = stream.position() + stream.context.actionLength;
    while (stream.position() < end) {
        auto value = readValue(stream);
        if (value == nullptr)
            break;
        values.add(std::move(value));
    }
}

void SwfActionPush::writePayload(SwfOStream& stream) {
    for (const SwfValue* value : values)
        value->write(stream);
}

void SwfActionBranch::read(SwfIStream& stream) { branchOffset = stream.readSI16("BranchOffset"); }

void SwfActionBranch::writePayload(SwfOStream& stream) { stream.writeSI16(branchOffset); }

SwfActionGetURL2::SwfActionGetURL2(SwfIStream& stream) : SwfActionGetURL2() {
    flags = stream.readUI8("Flags");
    if (stream.context.fullForm)
        return;
    const uint32_t method = flags >> bits(false).methodShift & highestMethod;
    if ((flags & reserved) != 0 || method == highestMethod)
        stream.markInexact("its flags have no form here");
}

void SwfActionGetURL2::writePayload(SwfOStream& stream) { stream.writeUI8(flags); }

SwfActionGotoFrame2::SwfActionGotoFrame2(SwfIStream& stream) : SwfActionGotoFrame2() {
    const Bits bit = bits(stream.context.fullForm);
    const uint8_t flags = stream.readUI8("Flags");
    play = (flags & bit.play) != 0;
    hasSceneBias = (flags & bit.sceneBias) != 0;
    if (hasSceneBias)
        sceneBias = stream.readUI16("SceneBias");
    if (stream.context.fullForm) {
        reserved = flags >> 2;
        return;
    }
    const bool biasOfZero = hasSceneBias && sceneBias == 0;
    if ((flags & ~(bit.play | bit.sceneBias)) != 0 || biasOfZero)
        stream.markInexact("its flags have no form here");
}

void SwfActionGotoFrame2::writePayload(SwfOStream& stream) {
    const Bits bit = bits(stream.context.fullForm);
    const bool writesBias = sceneBias != 0 || (stream.context.fullForm && hasSceneBias);
    const uint32_t above = stream.context.fullForm ? uint32_t(reserved) << 2 : 0;
    stream.writeUI8(static_cast<uint8_t>((play ? bit.play : 0) | (writesBias ? bit.sceneBias : 0) | above));
    if (writesBias)
        stream.writeUI16(sceneBias);
}

void SwfActionBlock::readCodeSize(SwfIStream& stream) { codeSize = stream.readUI16("CodeSize"); }

void SwfActionBlock::write(SwfOStream& stream) {
    writeHeader(stream, size - body.byteSize);
    writePayload(stream);
}

void SwfActionBlock::writeBody(SwfOStream& stream) {
    writeCut(stream, body.byteSize, "bytes of body", "their size");
    body.measureOrWrite(stream);
}

SwfActionDefineFunction::SwfActionDefineFunction(SwfIStream& stream) : SwfActionDefineFunction() {
    stream.readString(functionName, "FunctionName");
    const uint16_t count = stream.readUI16("NumParams");
    for (uint32_t i = 0; i < count && startsItem(stream, "Params"); ++i)
        stream.readString(parameters.append({}), "Params");
    readCodeSize(stream);
}

void SwfActionDefineFunction::writePayload(SwfOStream& stream) {
    functionName.write(stream, true);
    stream.writeUI16(static_cast<uint16_t>(parameters.size()));
    for (const SwfString& parameter : parameters)
        parameter.write(stream, true);
    writeBody(stream);
}

void SwfActionDefineFunction::write(SwfOStream& stream) {
    checkCount(parameters.size(), "DefineFunction > NumParams");
    checkCount(body.byteSize, "DefineFunction > CodeSize");
    SwfActionBlock::write(stream);
}

SwfActionDefineFunction2::SwfActionDefineFunction2(SwfIStream& stream) : SwfActionDefineFunction2() {
    stream.readString(functionName, "FunctionName");
    const uint16_t count = stream.readUI16("NumParams");
    registerCount = stream.readUI8("RegisterCount");
    flags = stream.readUI16("Flags");
    for (uint32_t i = 0; i < count && startsItem(stream, "Parameters"); ++i) {
        SwfRegisterParam& parameter = parameters.append({});
        parameter.registerNumber = stream.readUI8("Register");
        stream.readString(parameter.name, "ParamName");
    }
    readCodeSize(stream);
}

void SwfActionDefineFunction2::writePayload(SwfOStream& stream) {
    functionName.write(stream, true);
    writeCut(stream, parameters.size(), "parameters", "their number");
    stream.writeUI8(registerCount);
    stream.writeUI16(flags);
    for (const SwfRegisterParam& parameter : parameters) {
        stream.writeUI8(parameter.registerNumber);
        parameter.name.write(stream, true);
    }
    writeBody(stream);
}

SwfActionWith::SwfActionWith(SwfIStream& stream) : SwfActionWith() { readCodeSize(stream); }

void SwfActionWith::writePayload(SwfOStream& stream) { writeBody(stream); }

SwfActionTry::SwfActionTry(SwfIStream& stream) : SwfActionTry() {
    flags = stream.readUI8("Flags");
    catchInRegister = (flags & bits(stream.context.fullForm).catchInRegister) != 0;
    if (stream.context.fullForm) {
        readSizes(stream);
        readNameOrRegister(stream);
    } else {
        readNameOrRegister(stream);
        readSizes(stream);
    }
}

void SwfActionTry::readNameOrRegister(SwfIStream& stream) {
    if (catchInRegister)
        catchRegister = stream.readUI8("CatchRegister");
    else
        stream.readString(catchName, "CatchName");
}

void SwfActionTry::readSizes(SwfIStream& stream) {
    trySize = stream.readUI16("TrySize");
    catchSize = stream.readUI16("CatchSize");
    finallySize = stream.readUI16("FinallySize");
}

void SwfActionTry::writeNameOrRegister(SwfOStream& stream) {
    if (catchInRegister)
        stream.writeUI8(catchRegister);
    else
        catchName.write(stream, true);
}

void SwfActionTry::writeSizes(SwfOStream& stream) {
    stream.writeUI16(static_cast<uint16_t>(tryBody.byteSize));
    stream.writeUI16(static_cast<uint16_t>(catchBody.byteSize));
    stream.writeUI16(static_cast<uint16_t>(finallyBody.byteSize));
}

void SwfActionTry::writePayload(SwfOStream& stream) {
    stream.writeUI8(flags);
    if (stream.context.fullForm) {
        writeSizes(stream);
        writeNameOrRegister(stream);
    } else {
        writeNameOrRegister(stream);
        writeSizes(stream);
    }
    tryBody.measureOrWrite(stream);
    catchBody.measureOrWrite(stream);
    finallyBody.measureOrWrite(stream);
}

void SwfActionTry::write(SwfOStream& stream) {
    checkCount(tryBody.byteSize, "Try > TrySize");
    checkCount(catchBody.byteSize, "Try > CatchSize");
    checkCount(finallyBody.byteSize, "Try > FinallySize");
    const uint32_t bodies = tryBody.byteSize + catchBody.byteSize + finallyBody.byteSize;
    writeHeader(stream, stream.context.fullForm ? size - bodies : size);
    writePayload(stream);
}

std::array<SwfActions*, 3> bodiesOf(SwfAction& action) {
    switch (action.type) {
    case SwfActionCode::DefineFunction:
    case SwfActionCode::DefineFunction2:
    case SwfActionCode::With:
        if (auto* block = dynamic_cast<SwfActionBlock*>(&action))
            return {&block->body};
        break;
    case SwfActionCode::Try:
        if (auto* attempt = dynamic_cast<SwfActionTry*>(&action))
            return {&attempt->tryBody, &attempt->catchBody, &attempt->finallyBody};
        break;
    default: break;
    }
    return {};
}

} // namespace libswf
