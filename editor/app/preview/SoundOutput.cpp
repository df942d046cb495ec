#include "SoundOutput.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QBuffer>
#include <QMediaDevices>

namespace zelk {

static QAudioFormat formatOf(const Sound& sound) {
    QAudioFormat format;
    format.setSampleFormat(QAudioFormat::Int16);
    format.setSampleRate(static_cast<int>(sound.rate));
    format.setChannelCount(sound.channels);
    return format;
}

struct SoundOutput::Device {
    explicit Device(const Sound& sound) : sink(QMediaDevices::defaultAudioOutput(), formatOf(sound)) {
        samples.setData(QByteArray::fromRawData(reinterpret_cast<const char*>(sound.samples.data()),
                                                static_cast<qsizetype>(sound.samples.size() * sizeof(int16_t))));
        samples.open(QIODevice::ReadOnly);
        sink.start(&samples);
    }

    QBuffer samples;
    QAudioSink sink;
};

SoundOutput::SoundOutput(const Sound& sound) : _device(std::make_unique<Device>(sound)) {}

SoundOutput::~SoundOutput() = default;

bool SoundOutput::hasDevice() { return !QMediaDevices::defaultAudioOutput().isNull(); }

SoundOutput::State SoundOutput::state() const {
    switch (_device->sink.state()) {
    case QAudio::IdleState: return _device->samples.atEnd() ? State::ended : State::playing;
    case QAudio::StoppedState: return State::failed;
    default: return State::playing;
    }
}

double SoundOutput::playedSeconds() const { return static_cast<double>(_device->sink.processedUSecs()) / 1e6; }

} // namespace zelk
