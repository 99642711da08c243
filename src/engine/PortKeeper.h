// What becomes of the open ports while the program runs.
#pragma once

#include <QObject>

#include "engine/EngineControls.h"

namespace Kivora {

/// Looks at the devices of the open ports and opens again what was lost and is back, where that disturbs nothing; an
/// output that could not be opened, because its sound server did not run for example, is opened when it can be. So is
/// what the click has to itself. [gui]
class PortKeeper : public QObject {
    Q_OBJECT

public:
    static constexpr int kLookPeriodMs = 1000;

    enum class OutputState {
        kPlays,
        kStalled,  ///< open, and the device does nothing with what it is given for now
        kLost,     ///< open, and its device has failed or gone
        kMissing,  ///< none is open, and none has the name that was saved or chosen
        kFailed,   ///< none is open, though there are some
        kNone,     ///< there is none
        kNoFont,   ///< none is open: the built-in synthesizer was chosen, and is not listed without a sound font
        kHandsOn,  ///< open, and only a way to other programs, as the built-in synthesizer has no sound font
    };

    /// The controls outlive the keeper.
    explicit PortKeeper(EngineControls& controls) : controls_(controls) {}

    /// Once in kLookPeriodMs. Between attempts to open a port that is lost again and again the pauses grow.
    void Look();
    /// To be called when devices have come or gone: the lists follow them, and what is wanted and there is opened.
    void FollowDevices();
    OutputState GetOutputState() const;
    /// Whether the output that is open, or else wanted, is the built-in synthesizer.
    bool IsOutputBuiltIn() const;

signals:
    /// GetOutputState(), or whether the input is lost, may have changed; emitted from Look().
    void StateChanged();
    /// The keyboard that was lost, or was not there, is there and open.
    void InputReturned();
    /// The lists of ports are others.
    void PortsChanged();

private:
    /// Counts the looks between two attempts.
    class Pauses {
    public:
        bool IsOver();
        void NoteAttempt();
        /// To be called at each look at which nothing is lost.
        void NoteCalm();

    private:
        int left_ = 0;
        int next_ = 1;
        int calm_ = 0;
    };

    void LookAtOutput();
    void LookAtInput();

    EngineControls& controls_;
    bool isStalled_ = false;
    Pauses outputPauses_;
    Pauses inputPauses_;
};

}  // namespace Kivora
