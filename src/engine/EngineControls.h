// Everything that changes the engine, as the window's controls need it: no note is left hanging.
#pragma once

#include <QColor>
#include <QObject>
#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "engine/CKivora.h"
#include "engine/EngineExtras.h"
#include "engine/PanelWheels.h"
#include "engine/values/ClickSettings.h"

namespace Kivora {

struct LostJournal;
class TakeJournal;

/// The one way by which a window changes an engine; what it only reads, and the signals, are GetEngine()'s. Where an
/// operation of the engine, which sends what its rules say and nothing else, could leave a note sounding whose key is
/// up, the one of that name here does not; docs/hung-notes.md lists the places. The others are the engine's own.
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

    const CKivora& GetEngine() const { return engine_; }

    // Playing: keys, pedals and wheels, and what ends all that sounds.
    void PlayNoteOn(std::uint8_t note, std::uint8_t velocity) { engine_.PlayNoteOn(note, velocity); }
    void PlayNoteOff(std::uint8_t note) { engine_.PlayNoteOff(note); }
    void PlayAfterTouch(std::uint8_t note, std::uint8_t pressure) { engine_.PlayAfterTouch(note, pressure); }
    void PlayPcKey(std::uint8_t note, int level) { engine_.PlayPcKey(note, level); }
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
    void HearNote(int slot, std::uint8_t note, std::uint8_t velocity) { engine_.HearNote(slot, note, velocity); }
    void EndHeardNote() { engine_.EndHeardNote(); }
    /// Ends every note; pedals and wheels stay as they are.
    void AllNotesOff();
    /// Pauses or stops what is played back, if anything is; what it has set is as the player had it. SongPlayer has the
    /// rest of what is done with a song.
    void PauseSong();
    void StopSong();
    /// Stops what is played back, ends every note, lifts the pedal for good and resets the synthesizer, which takes
    /// about 150 ms.
    void Panic();
    /// Pauses what is played back, ends every note and lifts every pedal for good, those of the input too, and lets the
    /// player write it.
    void FallSilent();
    /// Closes the input, ends every note and lets the player write it; what could not be ended on a lost output is
    /// tried once more. Before the engine is destroyed.
    void Close();

    // Voices: which sound together, each one's patch, volume and transposition, and their arpeggiators.
    void SetVoiceMode(bool dual, bool split);
    void SetSplitPoint(int note) { engine_.SetSplitPoint(note); }
    void SetPatch(int patch, int slot);
    /// To the next one or the one before. It is used as soon as it is played.
    void NextPatch(int slot);
    void PrevPatch(int slot);
    void VolumeUp(int slot) { engine_.VolumeUp(slot); }
    void VolumeDown(int slot) { engine_.VolumeDown(slot); }
    void SetVolume(int volume, int slot) { engine_.SetVolume(volume, slot); }
    void TransposeUp(int slot) { engine_.TransposeUp(slot); }
    void TransposeDown(int slot) { engine_.TransposeDown(slot); }
    void SetArpeggiating(bool on) { engine_.SetArpeggiating(on); }
    /// Calls `change` with the arpeggiator under the engine's lock. Afterwards notes are ended if it is bypassed or
    /// listens otherwise than before, and a gate of 0 is raised. Throws what `change` and CKivora::WithArpeggiator()
    /// throw.
    void ChangeArpeggiator(int index, const std::function<void(NK::MIDI::CArpeggiator1&)>& change);
    /// Silence, then `load`, which replaces settings of voices and arpeggiators and returns whether it did; then gates
    /// of 0 are raised and the volumes sent. Returns the result of `load`.
    bool ReplaceVoices(const std::function<bool()>& load);

    // The clock: its tempo, and the metronome, which is heard as its settings say.
    /// By one. A new bar begins, unless an arpeggio is playing: then it goes on in its step, so that a tempo that is
    /// turned does not keep it silent.
    void TempoUp() { StepTempo(1); }
    void TempoDown() { StepTempo(-1); }
    void SetTempoInBar(int beatsPerMinute) { engine_.SetTempoInBar(beatsPerMinute); }
    /// From the second call on to the tempo of the calls. The place in the bar stays: no new bar begins.
    void TapTempo();
    void SetMetronome(bool on) { engine_.SetMetronome(on); }
    void SetClick(const ClickSettings& settings) { engine_.SetClick(settings); }

    // Ports: the devices that play and are played on. These throw as the engine's operations do. PortKeeper looks after
    // what is open.
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
    bool UpdatePorts() { return engine_.UpdatePorts(); }
    void SetSavedInputPortName(const NK::CString& name) { engine_.SetSavedInputPortName(name); }
    void SetSavedOutputPortName(const NK::CString& name) { engine_.SetSavedOutputPortName(name); }
    /// After Close(), where the engine is not destroyed.
    void ShutdownMidi() { engine_.ShutdownMidi(); }
    LibMidi::SynthControl* GetSynth() { return engine_.GetSynth(); }

    // The input's controls that are bound to the panel.
    /// Calls `action` with them under the engine's lock and returns its result.
    template <class Action>
    decltype(auto) WithBoundControls(Action&& action) {
        return engine_.WithExtras([&action](EngineExtras& extras) -> decltype(auto) {
            return std::forward<Action>(action)(extras.controls);
        });
    }

    // Takes: what is recorded, from its begin until it is saved or refused.
    /// A pedal that is not at rest gets its value again, in the recording too. Then it is counted in, if the click's
    /// settings say so.
    bool StartRecording();
    /// What was played before is let out into the recording first. Ends nothing that sounds.
    bool StopRecording();
    /// StopRecording() if one runs, then as it was played; SaveTake() and SaveLatestTake() close what was held.
    bool SaveRecording(const NK::CString& path);
    /// From now on takes are kept in that folder until they are saved or refused, by a TakeJournal of the controls; one
    /// that was theirs before ends.
    void KeepTakes(const NK::CString& folder);
    /// What is kept, for reading and its signals; null before KeepTakes(), without which none of the following is to be
    /// called.
    const TakeJournal* GetTakes() const { return takes_.get(); }
    bool SaveTake(int id, const NK::CString& path, bool onGrid);
    bool SaveLatestTake(const NK::CString& path, bool onGrid);
    bool RefuseTake(int id);
    void WriteOutTakes();
    std::vector<LostJournal> TakeLostJournals();

    // Presets.
    /// A preset that cannot be read changes nothing and ends no note.
    bool LoadPreset(const NK::CString& name, bool factory);
    /// What CKivora::ReadPreset() or somebody else has read; ReplaceVoices().
    bool ApplyPreset(const NK::CString& name, NK::CIniFile& file);
    bool SavePreset(const NK::CString& name) { return engine_.SavePreset(name); }
    bool DeletePreset(const NK::CString& name) { return engine_.DeletePreset(name); }
    /// It was loaded or saved by the user just now.
    void NotePreset(const NK::CString& name, bool factory);
    /// It was loaded on the way through the presets: it counts as used once a note is played with it.
    void NoteSteppedPreset(const NK::CString& name, bool factory);
    void SortPresetsByUse(bool on);

    // Settings, which SaveSettings() writes with everything else that is kept.
    /// At the start, or silence first; then gates of 0 are raised.
    bool LoadSettings();
    bool SaveSettings() { return engine_.SaveSettings(); }
    /// Any of Settings; who is told of it see CKivora::ChangeSettings().
    void ChangeSettings(const std::function<void(Settings& settings)>& change) { engine_.ChangeSettings(change); }
    LastFolders& GetLastFolders() { return engine_.GetLastFolders(); }
    void SetVelocityLow(int velocity) { engine_.SetVelocityLow(velocity); }
    void SetVelocityNormal(int velocity) { engine_.SetVelocityNormal(velocity); }
    void SetVelocityHigh(int velocity) { engine_.SetVelocityHigh(velocity); }
    /// Of the input's notes, and whether the screen's piano plays louder where a key is pressed lower.
    void SetVelocityWays(const VelocityCurve& input, bool screenByHeight);
    void SetPCKeyWay(NK::Piano::EPCKeyWay way) { engine_.SetPCKeyWay(way); }
    void SetTranslatePatchNames(bool on) { engine_.SetTranslatePatchNames(on); }
    void SetTranslateKeyNames(bool on) { engine_.SetTranslateKeyNames(on); }
    void SetShowNoteNames(bool on) { engine_.SetShowNoteNames(on); }
    void SetKeyboardColoring(int coloring) { engine_.SetKeyboardColoring(coloring); }
    void SetUIColor(const QColor& color) { engine_.SetUIColor(color); }
    void SetUIDisplayColor(const QColor& color) { engine_.SetUIDisplayColor(color); }
    void SetUIDisplay2Color(const QColor& color) { engine_.SetUIDisplay2Color(color); }
    void SetWallpaper(const QString& path) { engine_.SetWallpaper(path); }
    /// Whether what is played is kept for a while.
    void KeepPlayed(bool on);
    /// Whether takes are saved on the grid, where nothing else is chosen.
    void SetSavesTempo(bool on);
    void SetFavoritePatch(int patch, bool on);
    /// It was chosen by the user just now.
    void NotePatch(int patch);

private:
    // What they do with the engine beside the operations above is theirs alone.
    friend class PortKeeper;
    friend class SongPlayer;

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
    void StepTempo(int by) { ChangeTempo(engine_.GetTempo() + by); }
    void ChangeTempo(int tempo);  ///< beats a minute
    bool IsArpeggioPlaying();
    bool ChangeOutput(const std::function<bool()>& change);
    bool SwitchOutput(int index);
    bool ReplaceLostOutput(int index);
    void OpenRemainingPorts();
    void ChangePatch(int slot, int patch);
    void StepPatch(int slot, int patch);
    void RaiseGates();

    CKivora& engine_;
    std::atomic<std::uint8_t> pedal_{0};  ///< the last value of the sustain pedal, whatever its source
    PanelWheels wheels_;                  ///< touched with the engine's lock held only
    QMetaObject::Connection connection_;
    std::unique_ptr<TakeJournal> takes_;
};

}  // namespace Kivora
