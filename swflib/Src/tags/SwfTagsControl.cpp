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
    hasPassword = stream.bodyLeft() != 0;
    if (hasPassword)
        stream.readString(password, "Password");
}

void SwfTagProtect::writeBody(SwfOStream& stream) {
    if (hasPassword)
        password.write(stream, true);
}

SwfTagFrameLabel::SwfTagFrameLabel(SwfIStream& stream) : SwfTagFrameLabel() {
    stream.readString(name, "Name");
    if (stream.bodyLeft() == 0)
        return;
    const uint8_t anchor = stream.readUI8("NamedAnchor");
    isAnchor = anchor != 0;
    if (anchor > 1)
        stream.markInexact("its anchor byte is neither 0 nor 1");
}

void SwfTagFrameLabel::writeBody(SwfOStream& stream) {
    name.write(stream, true);
    if (isAnchor)
        stream.writeUI8(1);
}

SwfTagEnableDebugger::SwfTagEnableDebugger(SwfIStream& stream) : SwfTagEnableDebugger() {
    stream.readString(password, "Password");
}

void SwfTagEnableDebugger::writeBody(SwfOStream& stream) { password.write(stream, true); }

SwfTagEnableDebugger2::SwfTagEnableDebugger2(SwfIStream& stream) : SwfTagEnableDebugger2() {
    stream.readUI16("Reserved");
    stream.readString(password, "Password");
}

void SwfTagEnableDebugger2::writeBody(SwfOStream& stream) {
    stream.writeUI16(0);
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
