// Plays samples.
#pragma once

#include <QTimer>
#include <memory>

#include "SoundOutput.h"

namespace zelk {

class SoundPlayer : public QObject {
    Q_OBJECT
public:
    explicit SoundPlayer(QObject* parent = nullptr);

    static bool hasDevice() { return SoundOutput::hasDevice(); }

    void play(std::shared_ptr<const Sound> sound);
    void stop();
    bool isPlaying() const { return _output != nullptr; }
    /// How far it is, from 0 to 1; below 0 when nothing is played.
    double played() const;
    /// What kept the last sound from being played to its end; empty for nothing.
    const QString& problem() const { return _problem; }

Q_SIGNALS:
    /// It started, went on, or ended.
    void changed();

private:
    void look();

    std::shared_ptr<const Sound> _sound;
    std::unique_ptr<SoundOutput> _output; // null while nothing is played
    QTimer _timer;
    QString _problem;
};

} // namespace zelk
