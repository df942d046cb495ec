#include "SwfTagsControl.h"

namespace libswf {

SwfTagSetBackgroundColor::SwfTagSetBackgroundColor(SwfIStream& stream) : SwfTagSetBackgroundColor() {
    stream.context.alpha = false;
    color.read(stream);
}

void SwfTagSetBackgroundColor::writeBody(SwfOStream& stream) {
    stream.context.alpha = false;
    color.write(stream);
}

SwfTagProtect::SwfTagProtect(SwfIStream& stream) : SwfTagProtect() {
    const uint64_t start = stream.position();
    hasReserved = stream.context.fullForm && stream.bodyLeft() >= 2 && stream.readUI16("Reserved") == 0;
    if (stream.context.fullForm && !hasReserved)
        stream.seek(start);
    hasPassword = stream.bodyLeft() != 0;
    if (hasPassword)
        stream.readString(password, "Password");
}

void SwfTagProtect::writeBody(SwfOStream& stream) {
    if (hasReserved)
        stream.writeUI16(0);
    if (hasPassword)
        password.write(stream, true);
}

SwfTagFrameLabel::SwfTagFrameLabel(SwfIStream& stream) : SwfTagFrameLabel() {
    stream.readString(name, "Name");
    if (stream.bodyLeft() == 0)
        return;
    const uint8_t anchor = stream.readUI8("NamedAnchor");
    isAnchor = anchor != 0;
    if (stream.context.fullForm && anchor != 1)
        anchorByte = anchor;
    else if (anchor > 1)
        stream.markInexact("its anchor byte is neither 0 nor 1");
}

void SwfTagFrameLabel::writeBody(SwfOStream& stream) {
    name.write(stream, true);
    if (anchorByte || isAnchor)
        stream.writeUI8(anchorByte.value_or(1));
}

SwfTagEnableDebugger::SwfTagEnableDebugger(SwfIStream& stream) : SwfTagEnableDebugger() {
    stream.readString(password, "Password");
}

void SwfTagEnableDebugger::writeBody(SwfOStream& stream) { password.write(stream, true); }

SwfTagEnableDebugger2::SwfTagEnableDebugger2(SwfIStream& stream) : SwfTagEnableDebugger2() {
    reserved = stream.readUI16("Reserved");
    stream.readString(password, "Password");
}

void SwfTagEnableDebugger2::writeBody(SwfOStream& stream) {
    stream.writeUI16(stream.context.fullForm ? reserved : 0);
    password.write(stream, true);
}

SwfTagScriptLimits::SwfTagScriptLimits(SwfIStream& stream) : SwfTagScriptLimits() {
    maxRecursionDepth = stream.readUI16("MaxRecursionDepth");
    scriptTimeoutSeconds = stream.readUI16("ScriptTimeoutSeconds");
}

void SwfTagScriptLimits::writeBody(SwfOStream& stream) {
    stream.writeUI16(maxRecursionDepth);
    stream.writeUI16(scriptTimeoutSeconds);
}

SwfTagSetTabIndex::SwfTagSetTabIndex(SwfIStream& stream) : SwfTagSetTabIndex() {
    depth = stream.readUI16("Depth");
    tabIndex = stream.readUI16("TabIndex");
}

void SwfTagSetTabIndex::writeBody(SwfOStream& stream) {
    stream.writeUI16(depth);
    stream.writeUI16(tabIndex);
}

SwfTagFileAttributes::SwfTagFileAttributes(SwfIStream& stream) : SwfTagFileAttributes() {
    for (uint32_t shift = 0; shift < 32 && stream.bodyLeft() != 0; shift += 8)
        flags |= uint32_t(stream.readUI8("Flags")) << shift;
}

void SwfTagFileAttributes::writeBody(SwfOStream& stream) { stream.writeUI32(flags); }

SwfTagProductInfo::SwfTagProductInfo(SwfIStream& stream) : SwfTagProductInfo() {
    productId = stream.readUI32("ProductID");
    edition = stream.readUI32("Edition");
    majorVersion = stream.readUI8("MajorVersion");
    minorVersion = stream.readUI8("MinorVersion");
    buildLow = stream.readUI32("BuildLow");
    buildHigh = stream.readUI32("BuildHigh");
    compilationDate = stream.readUI32("CompilationDate");
    compilationDate |= uint64_t(stream.readUI32("CompilationDate")) << 32;
}

void SwfTagProductInfo::writeBody(SwfOStream& stream) {
    stream.writeUI32(productId);
    stream.writeUI32(edition);
    stream.writeUI8(majorVersion);
    stream.writeUI8(minorVersion);
    stream.writeUI32(buildLow);
    stream.writeUI32(buildHigh);
    stream.writeUI32(static_cast<uint32_t>(compilationDate));
    stream.writeUI32(static_cast<uint32_t>(compilationDate >> 32));
}

SwfTagDebugID::SwfTagDebugID(SwfIStream& stream) : SwfTagDebugID() {
    stream.readBytes(uuid.size(), uuid.data(), "UUID");
}

void SwfTagDebugID::writeBody(SwfOStream& stream) { stream.writeBytes(uuid); }

SwfTagEnableTelemetry::SwfTagEnableTelemetry(SwfIStream& stream) : SwfTagEnableTelemetry() {
    reserved = stream.readUI16("Reserved");
    hasPasswordHash = stream.bodyLeft() != 0;
    if (hasPasswordHash)
        stream.readBytes(passwordHash.size(), passwordHash.data(), "PasswordHash");
}

void SwfTagEnableTelemetry::writeBody(SwfOStream& stream) {
    stream.writeUI16(reserved);
    if (hasPasswordHash)
        stream.writeBytes(passwordHash);
}

SwfTagMetadata::SwfTagMetadata(SwfIStream& stream) : SwfTagMetadata() { stream.readString(data, "Metadata"); }

void SwfTagMetadata::writeBody(SwfOStream& stream) { data.write(stream, true); }

SwfTagDefineSceneAndFrameLabelData::SwfTagDefineSceneAndFrameLabelData(SwfIStream& stream)
    : SwfTagDefineSceneAndFrameLabelData() {
    for (uint32_t left = stream.readEncodedU32("SceneCount"); left != 0; --left) {
        if (stream.bodyLeft() == 0)
            stream.fail("SceneCount", "more scenes than the body holds");
        SwfScene& scene = scenes.append({});
        scene.offset = stream.readEncodedU32("Offset");
        stream.readString(scene.name, "Name");
    }
    for (uint32_t left = stream.readEncodedU32("FrameLabelCount"); left != 0; --left) {
        if (stream.bodyLeft() == 0)
            stream.fail("FrameLabelCount", "more labels than the body holds");
        SwfSceneFrameLabel& label = frameLabels.append({});
        label.frameNum = stream.readEncodedU32("FrameNum");
        stream.readString(label.frameLabel, "FrameLabel");
    }
}

void SwfTagDefineSceneAndFrameLabelData::writeBody(SwfOStream& stream) {
    stream.writeEncodedU32(scenes.size());
    for (const SwfScene& scene : scenes) {
        stream.writeEncodedU32(scene.offset);
        scene.name.write(stream, true);
    }
    stream.writeEncodedU32(frameLabels.size());
    for (const SwfSceneFrameLabel& label : frameLabels) {
        stream.writeEncodedU32(label.frameNum);
        label.frameLabel.write(stream, true);
    }
}

} // namespace libswf
