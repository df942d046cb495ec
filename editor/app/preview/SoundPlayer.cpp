#include "SoundPlayer.h"

namespace zelk {

static constexpr int interval = 40; // milliseconds between looks at how far it is

SoundPlayer::SoundPlayer(QObject* parent) : QObject(parent) {
    _timer.setInterval(interval);
    connect(&_timer, &QTimer::timeout, this, &SoundPlayer::look);
}

void SoundPlayer::play(std::shared_ptr<const Sound> sound) {
    stop();
    _sound = std::move(sound);
    _output = std::make_unique<SoundOutput>(*_sound);
    _timer.start();
    look();
}

void SoundPlayer::stop() {
    _timer.stop();
    _problem.clear();
    _output.reset();
    _sound.reset();
    Q_EMIT changed();
}

void SoundPlayer::look() {
    const SoundOutput::State state = _output->state();
    if (state != SoundOutput::State::playing) {
        stop();
        if (state == SoundOutput::State::failed)
            _problem = tr("The audio device does not play this sound.");
    }
    Q_EMIT changed();
}

double SoundPlayer::played() const {
    if (_output == nullptr || _sound->frames() == 0)
        return -1;
    return _output->playedSeconds() * _sound->rate / static_cast<double>(_sound->frames());
}

} // namespace zelk
