#include "SoundPlayer.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QMediaDevices>

namespace zelk {

namespace {

constexpr int interval = 40; // milliseconds between looks at how far it is

QAudioFormat formatOf(const Sound& sound) {
    QAudioFormat format;
    format.setSampleFormat(QAudioFormat::Int16);
    format.setSampleRate(static_cast<int>(sound.rate));
    format.setChannelCount(sound.channels);
    return format;
}

} // namespace

SoundPlayer::SoundPlayer(QObject* parent) : QObject(parent) {
    _timer.setInterval(interval);
    connect(&_timer, &QTimer::timeout, this, &SoundPlayer::look);
}

SoundPlayer::~SoundPlayer() = default;

bool SoundPlayer::hasDevice() { return !QMediaDevices::defaultAudioOutput().isNull(); }

void SoundPlayer::play(std::shared_ptr<const Sound> sound) {
    stop();
    _sound = std::move(sound);
    _samples.setData(QByteArray::fromRawData(reinterpret_cast<const char*>(_sound->samples.data()),
                                             static_cast<qsizetype>(_sound->samples.size() * sizeof(int16_t))));
    _samples.open(QIODevice::ReadOnly);
    _sink = std::make_unique<QAudioSink>(QMediaDevices::defaultAudioOutput(), formatOf(*_sound));
    _sink->start(&_samples);
    _timer.start();
    look();
}

void SoundPlayer::stop() {
    _timer.stop();
    _problem.clear();
    _sink.reset();
    _samples.close();
    _samples.setData({});
    _sound.reset();
    Q_EMIT changed();
}

// Idle: all samples are played. Stopped: the device has gone, or does not take them.
void SoundPlayer::look() {
    const bool hasEnded = _sink->state() == QAudio::IdleState && _samples.atEnd();
    const bool hasFailed = _sink->state() == QAudio::StoppedState;
    if (hasEnded || hasFailed) {
        stop();
        if (hasFailed)
            _problem = tr("The audio device does not play this sound.");
    }
    Q_EMIT changed();
}

double SoundPlayer::played() const {
    if (_sink == nullptr || _sound->frames() == 0)
        return -1;
    return static_cast<double>(_sink->processedUSecs()) * _sound->rate / 1e6 / static_cast<double>(_sound->frames());
}

} // namespace zelk
