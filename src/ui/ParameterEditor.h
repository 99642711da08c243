// Which parameter the value keys and the jog dial change.
#pragma once

namespace Kivora {
class EngineControls;
}

/// One of seven parameters is edited at a time. Without an engine nothing is changed. [gui]
class ParameterEditor {
public:
    enum class EMode { kPatch1, kPatch2, kTranspose1, kTranspose2, kVolume1, kVolume2, kTempo };

    /// Not owned; may be null.
    explicit ParameterEditor(Kivora::EngineControls* controls) : controls_(controls) {}

    EMode GetMode() const { return mode_; }
    void SetMode(EMode mode) { mode_ = mode; }
    /// Without a second voice its parameter gives way to the first voice's.
    void LeaveMissingVoice();

    bool HasSecondVoice() const;
    /// The slot that steps of the second voice change: 1, or 2 in split mode.
    int SecondarySlot() const;

    void StepUp();
    void StepDown();

private:
    Kivora::EngineControls* controls_;
    EMode mode_ = EMode::kPatch1;
};
