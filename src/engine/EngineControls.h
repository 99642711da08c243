// The engine's operations as the user's controls need them: no note is left hanging.
#pragma once

#include <QObject>

#include <atomic>
#include <cstdint>
#include <functional>

#include "engine/CKivora.h"
#include "engine/PanelWheels.h"
#include "engine/PedalHolders.h"

namespace Kivora {

class SongPlayback;

/// Stands between the controls and the engine wherever an operation of the engine, which sends what its rules say and
/// nothing else, could leave a note sounding whose key is up; docs/hung-notes.md lists the places. What is not here is
/// called on the engine itself.
///
/// As long as the engine has its controls, what is sent is written in order wherever the order matters. Around an
/// operation that needs it comes silence: the pedal is lifted, all notes are ended, those that sound with a duration
/// included; a pedal that was not at rest gets its value again afterwards, and so does each wheel of the panel. All run
/// under one hold of the engine's lock, so that nothing played meanwhile slips between. [gui]
class EngineControls {
public:
    /// The gate that replaces one of 0, with which notes never end.
    static constexpr double kSmallestGatePercent = 10.0;

    /// The engine outlives the controls and is not owned.
    explicit EngineControls(CKivora& engine);
    ~EngineControls();
    EngineControls(const EngineControls&) = delete;
    EngineControls& operator=(const EngineControls&) = delete;

    CKivora& GetEngine() const { return engine_; }

    /// Of a key of the computer, and of the panel's own pedal. Where several hold the pedal, the input's keyboard
    /// included, it goes up with the last of them.
    void SetSustain(bool on) { HoldPedal(&PedalHolders::key, on); }
    void SetPanelSustain(bool on) { HoldPedal(&PedalHolders::strip, on); }
    /// A wheel or pedal of the panel, on the channel of every voice; it stays so until it is moved again, by whomever,
    /// or a reset of the synthesizer or the end brings it to rest.
    void SetWheel(EWheel wheel, int value);
    /// Brings those of the panel to rest that are not.
    void RestWheels();
    /// The same, and its sustain pedal.
    void RestWheelsAndPedals();
    /// How far the pitch wheel bends all voices; kept in the settings, and told to devices from then on.
    void SetBendRange(int semitones);
    int GetBendRange() const;
    /// Ends every note; pedals and wheels stay as they are.
    void AllNotesOff();
    /// Pauses or stops what is played back, if anything is; the panel's voices are as they were before, and so is a
    /// pedal that is not at rest.
    void PauseSong();
    void StopSong();
    /// Stops what is played back, ends every note, lifts the pedal for good and resets the synthesizer, which takes
    /// about 150 ms.
    void Panic();

    void SetVoiceMode(bool dual, bool split);
    void SetSplitPoint(int note) { engine_.SetSplitPoint(note); }
    void SetPatch(int patch, int slot);
    void NextPatch(int slot);
    void PrevPatch(int slot);
    void TransposeUp(int slot) { engine_.TransposeUp(slot); }
    void TransposeDown(int slot) { engine_.TransposeDown(slot); }
    void SetArpeggiating(bool on) { engine_.SetArpeggiating(on); }
    /// By one. A new bar begins, unless an arpeggio is playing: then it goes on in its step, so that a tempo that is
    /// turned does not keep it silent.
    void TempoUp() { StepTempo(1); }
    void TempoDown() { StepTempo(-1); }
    /// From the second call on to the tempo of the calls. The place in the bar stays: no new bar begins.
    void TapTempo();
    /// Calls `change` with the arpeggiator under the engine's lock. Afterwards notes are ended if it is bypassed or
    /// listens otherwise than before, and a gate of 0 is raised. Throws what `change` and CKivora::WithArpeggiator()
    /// throw.
    void ChangeArpeggiator(int index, const std::function<void(NK::MIDI::CArpeggiator1&)>& change);

    /// Silence, then `load`, which replaces settings of voices and arpeggiators and returns whether it did; then gates
    /// of 0 are raised and the volumes sent. Returns the result of `load`.
    bool ReplaceVoices(const std::function<bool()>& load);

    /// A preset that cannot be read changes nothing and ends no note.
    bool LoadPreset(const NK::CString& name, bool factory);
    /// At the start, or silence first; then gates of 0 are raised.
    bool LoadSettings();

    // These throw as the engine's operations do.
    /// In place of an output that was lost the devices are looked for first: a device that is back may have another
    /// place, and a library may send nothing to any port before it is started anew. The input is opened again then.
    bool SetOutputPortByIndex(int index);
    bool SetInputPortByIndex(int index);
    /// A port that fails keeps no other from being opened; throws the first failure then.
    void OpenPorts();
    bool RescanPorts();
    /// After a loss, the same port once more; a pedal that is not at rest gets its value again. False when it does not
    /// open.
    bool ReopenOutput();
    /// A pedal that is not at rest gets its value again, in the recording too. Then it is counted in, if the click's
    /// settings say so.
    bool StartRecording();
    /// What was played before is let out into the recording first. Ends nothing that sounds.
    bool StopRecording();

    /// Pauses what is played back, ends every note and lifts every pedal for good, those of the input too, and lets the
    /// player write it.
    void FallSilent();
    /// Closes the input, ends every note and lets the player write it; what could not be ended on a lost output is
    /// tried once more. Before the engine is destroyed.
    void Close();

private:
    /// What stands as the player wants it while notes are ended.
    struct Held {
        std::uint8_t pedal;
        PanelWheels wheels;
    };
    Held GetHeld() const { return {pedal_, wheels_}; }
    void Silence();
    void HoldPedal(bool PedalHolders::*holder, bool on);
    /// Whoever holds the pedal holds it in vain from now on.
    void ForgetPedal();
    void Restore(const Held& held);
    /// Notes sound on when a song ends: the sostenuto pedal, sent again, would catch keys that it was not meant for. It
    /// is where the song has moved it.
    void RestoreAfterSong();
    void EndSong(const std::function<void(SongPlayback& song)>& end);
    void StepTempo(int by) { ChangeTempo(engine_.GetTempo() + by); }
    void ChangeTempo(int tempo);  ///< beats a minute
    bool IsArpeggioPlaying();
    bool ChangeOutput(const std::function<bool()>& change);
    bool ReplaceLostOutput(int index);
    void OpenRemainingPorts();
    void ChangePatch(int slot, int patch);
    void RaiseGates();

    CKivora& engine_;
    std::atomic<std::uint8_t> pedal_{0};  ///< the last value of the sustain pedal, whatever its source
    PanelWheels wheels_;                  ///< touched with the engine's lock held only
    QMetaObject::Connection connection_;
};

}  // namespace Kivora
