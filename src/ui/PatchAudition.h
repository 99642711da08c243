// Hearing the patches that a menu goes through.
#pragma once

#include <QBasicTimer>
#include <QObject>

#include <cstdint>

namespace Kivora {
class EngineControls;
}

/// While it lives, a voice can have other patches for a moment. Does nothing while a recording runs. [gui]
class PatchAudition : public QObject {
    Q_OBJECT

public:
    /// The controls outlive it.
    PatchAudition(Kivora::EngineControls& controls, int slot);
    /// What sounds is ended; the voice keeps the patch that it has.
    ~PatchAudition() override;

    /// Gives the voice that patch and plays a short note with it alone, while nothing is arpeggiated.
    void hear(int patch);
    /// The patch that the voice had comes back.
    void takeBack();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    std::uint8_t noteOfVoice() const;
    void endNote();

    Kivora::EngineControls& controls_;
    const int slot_;
    const int patch_;
    QBasicTimer end_;
};
