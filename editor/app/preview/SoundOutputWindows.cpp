#include "SoundOutput.h"

#include <windows.h>

#include <mmsystem.h>

namespace zelk {

struct SoundOutput::Device {
    explicit Device(const Sound& sound) {
        WAVEFORMATEX format{};
        format.wFormatTag = WAVE_FORMAT_PCM;
        format.nChannels = static_cast<WORD>(sound.channels);
        format.nSamplesPerSec = sound.rate;
        format.wBitsPerSample = 16;
        format.nBlockAlign = static_cast<WORD>(sound.channels * sizeof(int16_t));
        format.nAvgBytesPerSec = sound.rate * format.nBlockAlign;
        rate = sound.rate;
        if (waveOutOpen(&device, WAVE_MAPPER, &format, 0, 0, CALLBACK_NULL) != MMSYSERR_NOERROR) {
            device = nullptr;
            return;
        }
        // It only reads them.
        samples.lpData = const_cast<char*>(reinterpret_cast<const char*>(sound.samples.data()));
        samples.dwBufferLength = static_cast<DWORD>(sound.samples.size() * sizeof(int16_t));
        isGiven = waveOutPrepareHeader(device, &samples, sizeof samples) == MMSYSERR_NOERROR &&
                  waveOutWrite(device, &samples, sizeof samples) == MMSYSERR_NOERROR;
    }
    ~Device() {
        if (device == nullptr)
            return;
        waveOutReset(device);
        waveOutUnprepareHeader(device, &samples, sizeof samples);
        waveOutClose(device);
    }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    HWAVEOUT device = nullptr;
    WAVEHDR samples{};
    uint32_t rate = 1;
    bool isGiven = false;
};

SoundOutput::SoundOutput(const Sound& sound) : _device(std::make_unique<Device>(sound)) {}

SoundOutput::~SoundOutput() = default;

bool SoundOutput::hasDevice() { return waveOutGetNumDevs() != 0; }

SoundOutput::State SoundOutput::state() const {
    if (!_device->isGiven)
        return State::failed;
    return (_device->samples.dwFlags & WHDR_DONE) != 0 ? State::ended : State::playing;
}

double SoundOutput::playedSeconds() const {
    MMTIME time{};
    time.wType = TIME_SAMPLES;
    if (_device->device == nullptr || waveOutGetPosition(_device->device, &time, sizeof time) != MMSYSERR_NOERROR ||
        time.wType != TIME_SAMPLES)
        return 0;
    return static_cast<double>(time.u.sample) / _device->rate;
}

} // namespace zelk
