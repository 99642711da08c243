// The performance engine.
#pragma once

#include <QColor>
#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "engine/Arpeggiators.h"
#include "engine/EngineDependencies.h"
#include "engine/files/PresetStore.h"
#include "engine/files/SettingsFile.h"
#include "engine/InputConnection.h"
#include "engine/OutputConnection.h"
#include "engine/PortList.h"
#include "engine/RunningClock.h"
#include "engine/values/HeldKeys.h"
#include "engine/values/Settings.h"
#include "engine/values/VoiceSlots.h"
#include "libmidi/MIDIPlayer.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "libmidi/MIDIPort.h"
#include "midi/MusicalClock.h"
#include "midi/TMIDIMessage.h"
#include "nk/nk_critical_section.h"
#include "nk/nk_ini_file.h"
#include "nk/nk_paths.h"
#include "nk/nk_sleeping_timer.h"
#include "nk/nk_string.h"
#include "nk/nk_time_source.h"

namespace Kivora {

class ClickOutput;
struct ClickSettings;
struct EngineExtras;

/// Owns the ports, the voices, the arpeggiators and the musical clock, and turns key events into MIDI.
///
/// One recursive lock is held by every operation for its whole run; the player's queue has a lock of its own that is
/// taken inside it. Operations may be called from any thread unless a line says otherwise, but those that open and
/// close ports or run the indicator belong to the GUI thread. Signals are emitted with the lock held, except
/// Bar(), Beat(), OutputLost(), InputLost(), RecordingSaved(), DamagedFileSetAside() and, while no settings or preset
/// are loaded, TempoChanged() and MetronomeChanged(); a slot of another thread is to be connected by
/// Qt::QueuedConnection or must not wait for anything. Channels are 0-based. "Ready" means that an output port, the
/// player and its sink exist. A slot number outside 0..2 throws NK::CBadIndexException.
class CKivora : public QObject, public LibMidi::MIDIPortDataListener, public NK::CTimerListener {
    Q_OBJECT

    /// The engine's lock for the length of an operation. When the outermost one ends, the player is given together what
    /// was queued, and the tick begins or ends to run.
    class NK_SCOPED_CAPABILITY Hold {
    public:
        explicit Hold(CKivora& engine) NK_ACQUIRE(engine.lock_) : engine_(engine) {
            engine.lock_.Lock();
            engine.BeginHold();
        }
        ~Hold() NK_RELEASE() { engine_.EndHold(); }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        CKivora& engine_;
    };

public:
    static constexpr int kSlotCount = VoiceSlots::kCount;
    static constexpr int kArpeggiatorCount = Arpeggiators::kCount;
    static constexpr int kMinTempo = RunningClock::kMinTempo;  ///< beats per minute
    static constexpr int kMaxTempo = RunningClock::kMaxTempo;  ///< beats per minute
    static constexpr int kTickPeriodMs = 1;  ///< while an arpeggiator has notes, a take runs or the metronome is heard
    static constexpr int kIndicatorPeriodMs = 5;

    /// Lists the ports and makes the player; opens no port. Throws what InitMidi() throws. [gui]
    explicit CKivora(EngineDependencies dependencies);
    /// Closes all MIDI and waits for a running tick. Sends nothing. [gui]
    ~CKivora() override;
    CKivora(const CKivora&) = delete;
    CKivora& operator=(const CKivora&) = delete;

    // Playing. A note's slot is 2 in split mode below the split point, else 0, by the untransposed note. What is played
    // is emitted untransposed and unscaled on the slot's channel as OnMIDIEvent; what is delivered, if ready, is
    // transposed, folded into 0..127 and scaled, and goes through the slot's arpeggiator. In dual mode slot 0's notes
    // are delivered for slot 1 too.
    void PlayNoteOn(std::uint8_t note, std::uint8_t velocity);
    void PlayNoteOff(std::uint8_t note);
    void PlayAfterTouch(std::uint8_t note, std::uint8_t pressure);
    /// Level 0 is the low velocity, 2 the high one, any other the normal one.
    void PlayPcKey(std::uint8_t note, int level);
    /// Controller 64, 127 or 0, on every slot's channel; needs the sink only.
    void SetSustain(bool on);
    /// The same with any value, 0..127. A pedal that goes up ends what the arpeggiators have latched.
    void SendSustain(std::uint8_t value);
    /// A message that is no note, as if it came from the input: a channel's on the channel of every slot, if ready;
    /// shown once.
    void PlayControl(NK::MIDI::TMIDIMessage message);
    /// A note of one slot alone, for a patch that is tried: shown to nobody, passed by the arpeggiators, neither
    /// recorded nor kept. The former one ends.
    void HearNote(int slot, std::uint8_t note, std::uint8_t velocity);
    /// Nothing where somebody plays the same note.
    void EndHeardNote();
    /// Each stores the flag, changed or not, then AllNotesOff().
    void SetDual(bool on);
    void SetSplit(bool on);
    /// The lowest note of the main voice in split mode, kept in 1..127. When it changes: AllNotesOff() in split mode,
    /// then VoiceSettingsChanged().
    void SetSplitPoint(int note);
    /// When the value changes: stores it, AllNotesOff(), ArpeggiatingChanged().
    void SetArpeggiating(bool on);

    // Voices.
    /// Stores any patch (negative is the percussion kit), then SendPatches(); the wire carries its low 7 bits.
    void SetPatch(int patch, int slot);
    void NextPatch(int slot);  ///< -1, 0 .. 127 and back to -1, then SendPatches()
    void PrevPatch(int slot);
    void VolumeUp(int slot);  ///< by 3, within 1..127; sends that slot's volume
    void VolumeDown(int slot);
    /// When the value, kept in 1..127, changes: stores it and sends that slot's volume.
    void SetVolume(int volume, int slot);
    void TransposeUp(int slot);  ///< AllNotesOff(), then by 1 within -120..120
    void TransposeDown(int slot);
    void SetVelocityLow(int velocity);  ///< kept in 1..127
    void SetVelocityNormal(int velocity);
    void SetVelocityHigh(int velocity);
    void SendPatches();  ///< a program change for each slot; needs the sink only
    void SendVolumes();  ///< controller 7 for each slot, if ready; then SendBendRange()
    /// How far the pitch wheel bends, for each slot; nothing unless that was chosen, see BendRange. If ready.
    void SendBendRange();
    int GetPatch(int slot) const;
    int GetTranspose(int slot) const;        ///< semitones
    int GetVelocityPercent(int slot) const;  ///< kept, and part of no computation
    int GetVolume(int slot) const;           ///< 0..127
    int VoiceChannel(int slot) const;        ///< 9 for a negative patch, else the slot
    bool IsDual() const;
    bool IsSplit() const;
    int GetSplitPoint() const;
    bool IsArpeggiating() const;
    std::uint8_t GetVelocityLow() const;
    std::uint8_t GetVelocityNormal() const;
    std::uint8_t GetVelocityHigh() const;

    // Each of these three stands twice: who may only read the engine is given what cannot be changed.
    /// Calls `action` with the engine's lock held and returns its result.
    template <class Action>
    decltype(auto) WithLock(Action&& action) {
        const Hold hold(*this);
        return std::forward<Action>(action)();
    }
    template <class Action>
    decltype(auto) WithLock(Action&& action) const {
        const CLockGuard guard(lock_);
        return std::forward<Action>(action)();
    }
    /// Calls `action` with an arpeggiator, see Arpeggiators::GetIndexOfSlot(), under the engine's lock and returns its
    /// result, which must not refer to the arpeggiator. Throws NK::CBadIndexException where there is none of that
    /// index.
    template <class Action>
    decltype(auto) WithArpeggiator(int index, Action&& action) {
        const Hold hold(*this);
        CatchUpWithTicks();
        return std::forward<Action>(action)(arpeggiators_.At(index));
    }
    template <class Action>
    decltype(auto) WithArpeggiator(int index, Action&& action) const {
        const CLockGuard guard(lock_);
        return std::forward<Action>(action)(arpeggiators_.At(index));
    }

    /// Calls `action` with what the instrument offers beyond its rules, under the engine's lock, and returns its
    /// result.
    template <class Action>
    decltype(auto) WithExtras(Action&& action) {
        const CLockGuard guard(lock_);
        return std::forward<Action>(action)(*extras_);
    }
    template <class Action>
    decltype(auto) WithExtras(Action&& action) const {
        const CLockGuard guard(lock_);
        const EngineExtras& extras = *extras_;
        return std::forward<Action>(action)(extras);
    }

    // MIDI input. Not channel messages: sent on unchanged. Notes and key pressure: as played, with the velocity scaled,
    // on the slot's channel. Any other channel message: sent once on the channel of every slot, shown once. When what a
    // controller sends is taken out of the stream, what it has done to the voices before is undone: the volumes are
    // sent, others go to their value of rest, if they have one.
    /// Gives up without sending when the port is being closed; waits for the lock otherwise. [input]
    void OnMIDIData(const LibMidi::MIDIEvent* events, std::int32_t count) override;
    /// Ends the keys and the pedals that the input holds, then InputLost(). [input]
    void OnMIDIDataLost(std::uint32_t lostCount) override;
    /// Sends note-offs, velocity 0, for the keys that the input port holds, and lifts its pedals.
    void ReleaseInputKeys();
    /// Lifts the sostenuto and the hold 2 pedal that the input port holds; its keys and its sustain pedal stay.
    void LiftInputHolds();
    /// What the input port holds; what was taken out of its stream is not part of it.
    HeldKeys GetInputKeys() const;
    std::uint32_t GetInputLostCount() const;  ///< losses since the input port was opened; 0 without one

    // Ports. Failures throw NK::CException, an EngineFailure, with a translated text. [gui]
    /// ShutdownMidi(), then lists the ports and makes the player and its sink. Throws
    /// "MIDI engine initalization failed (PortMIDI interface couldn't be created).",
    /// "MIDI engine initalization failed (error listing MIDI ports).", "No MIDI ports found.",
    /// "MIDI engine initalization failed (error creating MIDI player)." or
    /// "MIDI engine initalization failed (NULL port address).".
    void InitMidi();
    void ShutdownMidi();
    /// Closes the old output, which resets it, and opens this one. Takes about 300 ms by design. Throws
    /// "Attempt to set a NULL port as out." (the old output stays open), "Failed to open output MIDI port." (none is
    /// open) or "Failed to start MIDI player." (open and attached, and nothing is queued to it).
    void SetOutputPort(LibMidi::MIDIOutPort* port);
    /// Nothing for the port that is open already. Throws "NULL input port." or
    /// "Failed to open input MIDI port:" with the port's name; then no input is open.
    void SetInputPort(LibMidi::MIDIInPort* port);
    /// False when no port has that name; true when it was opened. They throw as the operations above.
    bool SetOutputPortByName(const NK::CString& name);
    bool SetInputPortByName(const NK::CString& name);
    bool SetOutputPortByIndex(int index);  ///< in GetOutputPortNames(); false outside it
    bool SetInputPortByIndex(int index);   ///< in GetInputPortNames(); false outside it
    void CloseOutputPort();                ///< ResetSynth() first
    void CloseInputPort();
    /// Index of the preferred software synthesizer by name, else of the system's default output, else -1.
    int FindDefaultOutputPort() const;
    /// Throws "No default output MIDI port found.".
    NK::CString GetDefaultOutputPortName() const;
    /// Opens the saved ports, or the default ones where none is saved.
    void OpenPorts();
    /// Looks for devices again. The selected ports are opened again by name where they are there; ports of a set
    /// that stays are left open untouched unless they are lost. False while recording (nothing is done) and when no
    /// port was found. Throws as the setters of the ports do, when everything else is done.
    bool RescanPorts();
    /// Brings the lists up to date where that touches no open port; whether they have changed. Where no port is open,
    /// the name that is saved becomes the listed one of the port that it means.
    bool UpdatePorts();
    NK::CStringArray GetInputPortNames() const;
    NK::CStringArray GetOutputPortNames() const;
    NK::CString GetInputPortName() const;  ///< selected or saved; empty for none
    NK::CString GetOutputPortName() const;
    void SetSavedInputPortName(const NK::CString& name);  ///< what OpenPorts() opens; opens nothing itself
    void SetSavedOutputPortName(const NK::CString& name);
    int GetInputPortIndex() const;  ///< -1 when none is open
    int GetOutputPortIndex() const;
    bool IsOutputReady() const;
    /// Whether the open output has failed: nothing is queued until a port is opened again.
    bool IsOutputLost() const;
    /// Whether the device of the open input has gone; what it held was ended.
    bool IsInputLost() const;
    /// Look what has become of the devices of the open ports, and take note of one that has gone. Where no
    /// output is open the wanted one of a set that stays is asked; one that has failed to write and seems to work is
    /// back. [gui]
    LibMidi::DeviceState LookAtOutput();
    LibMidi::DeviceState LookAtInput();
    /// Close and open the same port again after its device was lost. An output is given its patches, volumes and what
    /// ends the notes that sounded when it was lost; a recording goes on. False when the device does not open: it stays
    /// lost. [gui]
    bool ReopenOutputPort();
    bool ReopenInputPort();
    /// Whether a re-scan would disturb nothing that sounds and no recording. [gui]
    bool IsRescanQuiet() const;
    /// Whether notes may sound on a device that was lost as an output, because they could not be ended.
    bool HasStrandedNotes() const;
    /// Whether a write failed that no look has told of yet.
    bool HasOutputFailed() const;
    /// Ends them where a port has that device's name: through the open output, or by opening the port for a moment.
    /// [gui]
    void EndStrandedNotes();
    /// The same when no port is to play any more: closes the ports and looks for the devices anew before. [gui]
    void EndStrandedNotesAtLast();
    /// Waits until everything queued has been taken by the player, at most kSettleLimitMs; at once when no player
    /// runs. True when nothing is left. [gui] [input]
    bool SettleOutput();
    static constexpr int kSettleLimitMs = 50;
    /// From now on messages whose order matters are written in the order in which they were sent. Without it what is
    /// sent between two rounds of the player, 1 ms, leaves in the order of the sink's heap.
    void KeepOrder();
    /// Forgets what is queued and not yet written.
    void DiscardQueued();
    /// Queues the note-offs of all notes that sound with a duration.
    void EndTimedNotes();
    /// What can be set on the built-in synthesizer; null where the program has none. Lives as long as the engine. [gui]
    LibMidi::SynthControl* GetSynth() { return dependencies_.synth.get(); }
    const LibMidi::SynthControl* GetSynth() const { return dependencies_.synth.get(); }

    // Metronome and tempo. [gui]
    void SetTempo(int beatsPerMinute);  ///< clamped to 40..220; nothing when that is the tempo, else a new bar begins
    /// As SetTempo(), but the clock goes on from the place in the bar where it stands, and the arpeggiators with it.
    void SetTempoInBar(int beatsPerMinute);
    void TempoUp();
    void TempoDown();
    int GetTempo() const;  ///< beats per minute
    void SetMetronome(bool on);
    bool IsMetronomeOn() const;
    void RestartClock();
    /// The tempo of the taps, of which this is one; nothing at the first.
    std::optional<int> Tap();
    /// How the metronome is heard. Another number of beats begins a new bar; MetronomeChanged().
    void SetClick(const ClickSettings& settings);
    ClickSettings GetClick() const;
    /// Opens the built-in synthesizer for the click where that has it to itself, again after it has failed, as soon as
    /// it can be played; closes what is not wanted any more. Not under the engine's lock: it may take a while. [gui]
    void LookAtClick();
    /// Begins a new bar, and counts in from it if the settings say so, until then or StopRecording().
    void BeginCountIn();
    /// The beats that are left of it, the one that sounds among them; 0 while nothing is counted in.
    int GetCountIn() const;
    NK::MIDI::MusicalClock GetMusicalClock() const;
    /// Advances the clock and the arpeggiators, which go on from the new position when the wall clock went back. A run
    /// of more than 24 days restarts the clock. [tick]
    void OnTimer(std::uint32_t timerId) override;

    // Recording. [gui]
    bool StartRecording();  ///< false when recording already or without a sink
    bool StopRecording();   ///< false when not recording or without a sink
    bool IsRecording() const;
    int GetRecordingTime() const;  ///< ms; 0 without a sink
    int GetIdleTime() const;       ///< ms since the last captured event; -1 without a sink or when not recording
    int GetRecordedCount() const;
    /// Stops a running recording and writes what was captured as a MIDI file; the captured events stay. False without
    /// captured events and when the file could not be written: then an older file of that name is as it was. The
    /// writing holds no lock.
    bool SaveRecording(const NK::CString& path);
    /// The sink, for reading what was captured; null without one. [any]
    std::shared_ptr<const LibMidi::MIDIPlayerQueue> GetCapture() const;

    // The settings that the panel uses.
    Settings GetSettings() const;
    /// Calls `change` with the settings under the engine's lock. Then each one that has changed is told of: names of
    /// patches by PatchChanged(), those of keys by KeyTranslationSettingChanged(), what the piano shows by
    /// KeyboardDisplayChanged(), the look by UISkinChanged(). Velocities are to be 1..127.
    void ChangeSettings(const std::function<void(Settings& settings)>& change);
    // The same one by one. The first four setters emit on every call.
    void SetTranslatePatchNames(bool on);        ///< PatchChanged()
    void SetTranslateKeyNames(bool on);          ///< KeyTranslationSettingChanged()
    void SetShowNoteNames(bool on);              ///< KeyboardDisplayChanged()
    void SetKeyboardColoring(int coloring);      ///< 0 none, 1 rainbow, 2 Scriabin; KeyboardDisplayChanged()
    void SetPCKeyWay(NK::Piano::EPCKeyWay way);  ///< KeyTranslationSettingChanged() when it differs
    void SetUIColor(const QColor& color);        ///< these four: UISkinChanged() when the value differs
    void SetUIDisplayColor(const QColor& color);
    void SetUIDisplay2Color(const QColor& color);
    void SetWallpaper(const QString& path);
    bool GetTranslatePatchNames() const;
    bool GetTranslateKeyNames() const;
    NK::Piano::EPCKeyWay GetPCKeyWay() const;
    bool GetShowNoteNames() const;
    int GetKeyboardColoring() const;
    QColor GetUIColor() const;
    QColor GetUIDisplayColor() const;
    QColor GetUIDisplay2Color() const;
    QString GetWallpaper() const;
    static QColor GetDefaultUIColor() { return Settings().uiColor; }
    static QColor GetDefaultUIDisplayColor() { return Settings().uiDisplayColor; }
    static QColor GetDefaultUIDisplay2Color() { return Settings().uiDisplay2Color; }

    // The settings file and presets. Nothing throws for what stands on the disk. The disk is read before the engine's
    // lock is taken and written after it is released. [gui]
    /// Reads the settings file and applies it: settings, voices, arpeggiators and the built-in synthesizer's; then
    /// ResetSynth(). A file that cannot be read counts as an empty one, and the result is false.
    bool LoadSettings();
    /// Whether LoadSettings() refused the file as damaged. The first SaveSettings() sets that file aside.
    bool AreSettingsDamaged() const { return settingsFile_.GetState() == SettingsFile::State::kDamaged; }
    /// Writes the settings file; what others have put into it, or changed since it was loaded, stays. False when it
    /// could not be saved, with the reason in NK::GetFileFailure(): then it is as it was.
    bool SaveSettings();
    /// How the file was found and saved.
    const SettingsFile& GetSettingsFile() const { return settingsFile_; }
    /// Saved with the settings.
    LastFolders& GetLastFolders() { return lastFolders_; }
    const LastFolders& GetLastFolders() const { return lastFolders_; }
    /// From a section and, for the arpeggiators, those named after it with "_Arpeggiator0" and "_Arpeggiator1". An
    /// arpeggiator whose section is missing or refused is bypassed. False, nothing changed, without the first section.
    bool LoadVoiceSettings(NK::CIniFile& file, const NK::CString& section);
    bool SaveVoiceSettings(NK::CIniFile& file, const NK::CString& section);
    /// The names in one folder as PresetStore::List() gives them.
    void ListPresets(NK::CStringArray& names, bool factory) const;
    bool PresetExists(const NK::CString& name, bool factory) const;
    /// ReadPreset(), then ApplyPreset().
    bool LoadPreset(const NK::CString& name, bool factory);
    /// Reads a preset's file; false when there is no such preset.
    bool ReadPreset(const NK::CString& name, bool factory, NK::CIniFile& file) const;
    /// Takes over what ReadPreset() read and makes `name` the current preset.
    bool ApplyPreset(const NK::CString& name, NK::CIniFile& file);
    /// Into the user's folder. False for a name that PresetStore::GetStoredName() refuses and when the file could not
    /// be saved: then an older preset of that name is as it was.
    bool SavePreset(const NK::CString& name);
    /// A preset of the user's; false when there is none.
    bool DeletePreset(const NK::CString& name);
    /// Both are created when they are first asked for.
    const NK::CString& GetUserDataDir() const;             ///< no "/" at the end
    const NK::CString& GetPresetsDir(bool factory) const;  ///< with a "/" at the end
    NK::CString GetPresetName() const;                     ///< as stored; empty before a preset was loaded or saved

signals:
    void OnMIDIEvent(int message);  ///< the record's four bytes, status lowest; emitted on the playing thread
    void SynthSet();                ///< an output was opened, or the synthesizer reset
    void PatchChanged();            ///< program changes were sent, or patch names are to be shown anew
    void RecordingStateChanged();
    void VoiceSettingsChanged();  ///< volume or transposition stepped, or the split point moved
    void KeyTranslationSettingChanged();
    void KeyboardDisplayChanged();
    void PresetChanged();
    void UISkinChanged();
    void TempoChanged();
    void MetronomeChanged();
    void ArpeggiatingChanged();
    void Bar();
    void Beat();
    /// Once when the output has failed or gone; emitted on the tick's or the GUI thread.
    void OutputLost();
    void InputLost();       ///< the input device's buffer ran over; emitted on the input port's thread
    void RecordingSaved();  ///< SaveRecording() has written a file; emitted with no lock held
    /// A damaged settings or preset file stood where one was saved now; it is kept under this path. Emitted with no
    /// lock held.
    void DamagedFileSetAside(const QString& path);
    /// Devices may have come or gone, for UpdatePorts(); emitted on a backend's thread, with no lock held.
    void DevicesChanged();

public slots:
    /// Silence, System Reset, patches and volumes, with waits of about 150 ms in all; ends a recording. Needs the sink
    /// only.
    void ResetSynth();
    /// Resets the arpeggiators and sends controller 123 on every slot's channel. Needs the sink only.
    void AllNotesOff();
    /// Looks at the clock for a new bar or beat. [gui]
    void onMetronomeTimer();

private:
    static constexpr int kPlayedOut = 1000;  ///< the time-out given to the sink's waits, which reduces it to 1 ms

    /// A text of the catalogue, and a name behind it; throws EngineFailure.
    [[noreturn]] static void Fail(const char* source, const QString& name = {});
    bool IsReady() const NK_REQUIRES(lock_) { return output_.GetPort() != nullptr && player_ && sink_; }
    void Show(NK::MIDI::TMIDIMessage message) { emit OnMIDIEvent(static_cast<int>(message.ToWord())); }
    /// Not what would end a note that the song plays too.
    void Send(NK::MIDI::TMIDIMessage message) NK_REQUIRES(lock_);
    /// A message on the channel of a slot.
    NK::MIDI::TMIDIMessage OnSlot(int slot, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) const
        NK_REQUIRES(lock_);
    void SendVoiceNote(std::uint8_t status, std::uint8_t note, std::uint8_t velocity, int slot) NK_REQUIRES(lock_);
    void DeliverNote(std::uint8_t status, std::uint8_t note, std::uint8_t velocity, int slot) NK_REQUIRES(lock_);
    void SendController(std::uint8_t controller, std::uint8_t value) NK_REQUIRES(lock_);
    void SendPatch(int slot) NK_REQUIRES(lock_);
    void SendVolume(int slot) NK_REQUIRES(lock_);
    void SleepAndPlayOut(std::uint32_t milliseconds) NK_REQUIRES(lock_);

    void BeginHold() NK_REQUIRES(lock_);
    void EndHold() NK_RELEASE(lock_);
    /// As a hold; EndHold() ends it. False, without one, when the port of the input is being closed.
    bool HoldForInput() NK_TRY_ACQUIRE(true, lock_);
    void ProcessInput(NK::MIDI::TMIDIMessage message) NK_REQUIRES(lock_);
    void RestController(std::uint8_t controller) NK_REQUIRES(lock_);
    void LiftInputPedal(std::uint8_t controller) NK_REQUIRES(lock_);

    void ListPortNames() NK_REQUIRES(lock_);
    /// Whether RescanPorts() leaves the open port as it is; false for null.
    bool KeepsThroughRescan(LibMidi::MIDIPort* port) NK_REQUIRES(lock_);
    /// What is gone takes no endings, and a write that it refuses would keep it from being opened again.
    void LoseOutput(bool isGone) NK_REQUIRES(lock_);
    /// The open output, or where none is open the one that would be opened; null otherwise.
    LibMidi::MIDIOutPort* FindWantedOutput() NK_REQUIRES(lock_);
    /// The open one, or where none is open the wanted one of a fixed set; null otherwise.
    LibMidi::MIDIOutPort* FindWatchedOutput();
    void AdvanceClock() NK_REQUIRES(lock_);
    /// The clock goes on otherwise, from its place or from the beginning of a bar: what is played lies on its bars.
    void NoteClock(bool beginsBar) NK_REQUIRES(lock_);
    /// Whether the tick's thread waits, as there is nothing for it to do: who looks at the clock moves it.
    bool IsTickParked() const NK_REQUIRES(lock_) { return tickTimer_ && !ticking_; }
    /// What the ticks would have done that were left out: they move the clock and play nothing.
    void CatchUpWithTicks() NK_REQUIRES(lock_);
    bool IsFailureUntold() const NK_REQUIRES(lock_);
    bool NeedsTicks() const NK_REQUIRES(lock_);
    void ParkOrRunTicks() NK_REQUIRES(lock_);
    /// Where the click is to be heard; null for nowhere.
    LibMidi::MIDIPlayerQueue* GetClickQueue() NK_REQUIRES(lock_);
    void StoreClick(const ClickSettings& settings) NK_REQUIRES(lock_);
    /// The built-in synthesizer's, where nothing but the click may want it; null for none.
    LibMidi::MIDIOutPort* FindClickPort() NK_REQUIRES(lock_);
    /// Before the port is another one's, or goes; null is none.
    void CloseClickOn(const LibMidi::MIDIOutPort* port) NK_REQUIRES(lock_);

    void WriteSettings(NK::CIniFile& file);
    void Tell(const std::vector<EShownIn>& changes) NK_REQUIRES(lock_);
    void LoadSynthSettings(NK::CIniFile& file);
    void SaveSynthSettings(NK::CIniFile& file);

    const EngineDependencies dependencies_;
    PresetStore presets_{dependencies_.userDataDir, dependencies_.factoryPresetsDir};
    SettingsFile settingsFile_{NK::JoinPath(dependencies_.userDataDir, Settings::kFileName)};
    LastFolders lastFolders_;
    /// What LoadSettings() could not put in force, for example while its sound font is not to be found, and what came
    /// of it: as long as that is in force the former is saved.
    std::optional<std::pair<LibMidi::SynthSettings, LibMidi::SynthSettings>> refusedSynth_;
    mutable NK::CCriticalSection lock_;
    int holds_ NK_GUARDED_BY(lock_) = 0;
    bool closed_ NK_GUARDED_BY(lock_) = false;  ///< the destructor has begun: ticks do nothing
    std::optional<NK::CThreadSleepingTimer> tickTimer_;
    bool hasBegun_ NK_GUARDED_BY(lock_) = false;  ///< the constructor is through: the tick may run
    bool ticking_ NK_GUARDED_BY(lock_) = false;
    QTimer indicatorTimer_;
    RunningClock clock_ NK_GUARDED_BY(lock_);
    Arpeggiators arpeggiators_ NK_GUARDED_BY(lock_);
    bool arpeggiating_ NK_GUARDED_BY(lock_) = false;
    Settings settings_ NK_GUARDED_BY(lock_);
    NK::CString presetName_ NK_GUARDED_BY(lock_);
    NK::CSysTimeSource timeSource_;
    PortList ports_ NK_GUARDED_BY(lock_);
    std::unique_ptr<LibMidi::MIDIPlayer> player_ NK_GUARDED_BY(lock_);
    bool playerTellsFailure_ NK_GUARDED_BY(lock_) = false;  ///< else the tick looks
    std::atomic<LibMidi::MIDIInPort*> inputPort_{nullptr};  ///< written with the lock held, by input_
    InputConnection input_ NK_GUARDED_BY(lock_){inputPort_};
    OutputConnection output_ NK_GUARDED_BY(lock_);
    std::shared_ptr<LibMidi::MIDIPlayerQueue> sink_ NK_GUARDED_BY(lock_);
    bool keepsOrder_ NK_GUARDED_BY(lock_) = false;
    const std::unique_ptr<EngineExtras> extras_;
    /// While the click has the built-in synthesizer to itself, see LookAtClick(); null otherwise.
    std::unique_ptr<ClickOutput> clickOutput_ NK_GUARDED_BY(lock_);
    HeldKeys inputKeys_ NK_GUARDED_BY(lock_);
    VoiceSlots voices_ NK_GUARDED_BY(lock_);
};

}  // namespace Kivora
