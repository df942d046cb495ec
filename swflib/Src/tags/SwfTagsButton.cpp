#include "SwfTagsButton.h"

namespace libswf {

SwfTagDefineButtonCxform::SwfTagDefineButtonCxform(SwfIStream& stream) : SwfTagDefineButtonCxform() {
    stream.context.alpha = false;
    buttonId = stream.readUI16("ButtonId");
    colorTransform.read(stream);
    while (stream.context.fullForm && stream.bodyLeft() != 0)
        furtherTransforms.append({}).read(stream);
}

void SwfTagDefineButtonCxform::writeBody(SwfOStream& stream) {
    stream.context.alpha = false;
    stream.writeUI16(buttonId);
    colorTransform.write(stream);
    for (const SwfColorTransform& transform : furtherTransforms)
        transform.write(stream);
}

SwfTagDefineButtonSound::SwfTagDefineButtonSound(SwfIStream& stream) : SwfTagDefineButtonSound() {
    buttonId = stream.readUI16("ButtonId");
    static constexpr const char* idFields[] = {"SoundIdRollOut", "SoundIdRollOver", "SoundIdPress", "SoundIdRelease"};
    const char* const* idField = idFields;
    for (SwfButtonSound* sound : sounds()) {
        sound->soundId = stream.readUI16(*idField++);
        if (sound->soundId != 0)
            sound->soundInfo.read(stream);
    }
}

void SwfTagDefineButtonSound::writeBody(SwfOStream& stream) {
    stream.writeUI16(buttonId);
    for (const SwfButtonSound* sound : sounds()) {
        stream.writeUI16(sound->soundId);
        if (sound->soundId != 0)
            sound->soundInfo.write(stream);
    }
}

} // namespace libswf
