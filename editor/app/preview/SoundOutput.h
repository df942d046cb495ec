// The way to the speakers: Qt Multimedia, or Windows itself where that is not built.
#pragma once

#include <memory>

#include "SoundCodec.h"

namespace zelk {

/// Plays one sound from its start; it stops when this goes.
class SoundOutput {
public:
    enum class State { playing, ended, failed };

    /// The samples have to stay as long as this.
    explicit SoundOutput(const Sound& sound);
    ~SoundOutput();
    SoundOutput(const SoundOutput&) = delete;
    SoundOutput& operator=(const SoundOutput&) = delete;

    /// False where there is nothing to play on. The first call looks for it.
    static bool hasDevice();

    /// Failed: the device has gone, or does not take the samples.
    State state() const;
    double playedSeconds() const;

private:
    struct Device;
    std::unique_ptr<Device> _device;
};

} // namespace zelk
