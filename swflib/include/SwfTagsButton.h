// Tags that add to a button: its colours and its sounds.
#pragma once

#include <array>

#include "SwfSoundInfo.h"
#include "SwfTag.h"

namespace libswf {

/// DefineButtonCxform (23): a colour transform without alpha for the whole button, or one for each of its records. The
/// classic form reads the first: others are bytes left over, which are lost unless the tag is kept raw.
class SwfTagDefineButtonCxform : public SwfTag {
public:
    uint16_t buttonId = 0;
    SwfColorTransform colorTransform;
    SwfVector<SwfColorTransform> furtherTransforms; ///< full form

    SwfTagDefineButtonCxform() : SwfTag(23) {}
    explicit SwfTagDefineButtonCxform(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// What a button plays on one event.
struct SwfButtonSound {
    uint16_t soundId = 0;   ///< 0: nothing
    SwfSoundInfo soundInfo; ///< in the file when there is a sound
};

/// DefineButtonSound (17).
class SwfTagDefineButtonSound : public SwfTag {
public:
    uint16_t buttonId = 0;
    SwfButtonSound rollOut, rollOver, press, release;

    SwfTagDefineButtonSound() : SwfTag(17) {}
    explicit SwfTagDefineButtonSound(SwfIStream& stream);

    /// The four sounds in file order.
    std::array<SwfButtonSound*, 4> sounds() { return {&rollOut, &rollOver, &press, &release}; }

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
