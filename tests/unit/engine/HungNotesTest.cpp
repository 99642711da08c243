// Random playing: no note is ever left hanging, what is held sounds, and what was sent last stands.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "engine/values/ClickSettings.h"
#include "midi/MIDINotes.h"
#include "nk/nk_ini_file.h"
#include "support/SentModel.h"
#include "support/SynthModel.h"
#include "unit/engine/AlsaStudio.h"
#include "unit/engine/FakeStudio.h"
#include "unit/engine/PlayedKeyboards.h"
#include "unit/engine/PortMidiStudio.h"
#include "unit/engine/SongRig.h"

using namespace KivoraTest;

namespace {

constexpr int kActions = KIVORA_HUNG_NOTE_ACTIONS;

using Keys = std::bitset<128>;

/// Plays an instrument at random and knows which keys and pedals are down.
class Musician {
public:
    using MakeStudio = std::function<std::unique_ptr<Studio>(EngineRig& rig)>;

    Musician(const MakeStudio& makeStudio, std::uint32_t seed)
        : random_(seed), studio_(makeStudio(rig_)), sharesChannels_(seed % 2 == 0), stripAlone_(seed % 4 == 1) {
        studio_->onWrite = [this](std::size_t synth, const LibMidi::MIDIEvent& event) { synths_[synth].Play(event); };
        rig_.onSend = [this](const LibMidi::MIDIEvent& event, bool timed) { sent_.Send(event, timed); };
        Begin();
    }

    ~Musician() {
        song_.reset();
        controls_.reset();
        rig_.engine.reset();  // before its devices
    }
    Musician(const Musician&) = delete;
    Musician& operator=(const Musician&) = delete;

    /// One action. Sets what GetFailure() returns when a check has failed.
    void Act() {
        ++actions_;
        const int choice = Draw(100);
        if (choice < 60) {
            Play();
        } else if (choice < 62) {
            MovePedal();
        } else if (choice < 63) {
            MoveStrip();
        } else if (choice < 75) {
            ChangeSettings();
        } else if (choice < 78) {
            PlayBack();
        } else if (choice < 90) {
            Name("time");
            rig_.Run(1 + Draw(20));
        } else if (choice < 95) {
            CheckAtRest();
            if (Draw(100) == 0) {
                LetGo();
            }
        } else if (Draw(10) == 0) {
            ActRarely();
        }
    }

    const std::string& GetFailure() const { return failure_; }
    std::string Describe() const {
        std::string text = "action " + std::to_string(actions_) + ": " + failure_ + "; the last ones:";
        for (const std::string& name : last_) {
            text += ' ' + name + ',';
        }
        return text;
    }

private:
    static constexpr std::array kVoiceChannels{0, 1, 2, 9};

    Kivora::CKivora& GetEngine() { return *rig_.engine; }
    int Draw(int below) { return static_cast<int>(random_() % static_cast<std::uint32_t>(below)); }
    bool Toss() { return Draw(2) != 0; }
    std::uint8_t DrawNote() { return static_cast<std::uint8_t>(Draw(8) == 0 ? Draw(128) : 48 + Draw(24)); }
    std::uint8_t DrawVelocity() { return static_cast<std::uint8_t>(1 + Draw(127)); }

    void Name(const char* name, int detail = -1) {
        last_.push_back(detail < 0 ? name : name + (' ' + std::to_string(detail)));
        if (last_.size() > 40) {
            last_.pop_front();
        }
    }
    void Fail(const std::string& what) {
        if (failure_.empty()) {
            failure_ = what;
        }
    }

    void Begin() {
        Kivora::EngineDependencies dependencies = rig_.GetDependencies();
        dependencies.backends = {studio_->GetCreator()};
        rig_.engine = std::make_unique<Kivora::CKivora>(std::move(dependencies));
        controls_ = std::make_unique<Kivora::EngineControls>(GetEngine());
        song_ = std::make_unique<Kivora::SongPlayer>(*controls_);
        controls_->OpenPorts();
        screen_.reset();
        computer_.reset();
        space_ = false;
        spaceDue_ = false;
        panelPedal_ = false;
        panelPedalDue_ = false;
        RestStrip();
        keyboards_.ForgetBindings();
        ForgetInput();
        ForgetSent();
    }

    /// What is sent may go elsewhere than to the output that is open at the next rest.
    void ForgetSent() {
        isSentKnown_ = false;
        due_ = {};
    }

    void ForgetInput() {
        keyboards_.Forget();
        externalPedals_ = {};
        externalPedalsDue_.reset();
        externalSostenuto_ = false;
    }

    /// Whether a keyboard can be played.
    bool HasInput() { return GetEngine().GetInputPortIndex() >= 0 && !GetEngine().IsInputLost(); }
    void PlayInput(int keyboard, const std::vector<LibMidi::MIDIEvent>& events) {
        studio_->Play(GetEngine().GetInputPortIndex(), keyboard, events);
    }
    void PlayInput(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
        PlayInput(GetKeyboards().front(), {{0U, status, data1, data2}});
    }
    std::vector<int> GetKeyboards() { return studio_->GetKeyboards(GetEngine().GetInputPortIndex()); }
    template <class Kind>
    const Kind& DrawOneOf(const std::vector<Kind>& all) {
        return all[static_cast<std::size_t>(Draw(static_cast<int>(all.size())))];
    }
    /// The pads share their notes with keys, and some of them their channel too.
    std::uint8_t DrawChannel(std::uint8_t note) {
        return Draw(4) == 0 ? PlayedKeyboards::kPadChannel : static_cast<std::uint8_t>(note & 0x0F);
    }

    /// A key that is down, searched from a random one on; false when none is.
    bool DrawHeld(const Keys& keys, std::uint8_t& note) {
        const int start = Draw(128);
        for (int i = 0; i < 128; ++i) {
            note = static_cast<std::uint8_t>((start + i) % 128);
            if (keys[note]) {
                return true;
            }
        }
        return false;
    }

    /// Calls `action` with the channel and the note of each voice that plays a key.
    template <class Action>
    void ForEachVoice(int key, Action action) {
        const auto play = [&](int slot) {
            action(static_cast<std::size_t>(GetEngine().VoiceChannel(slot)),
                   static_cast<std::size_t>(NK::MIDI::FoldNote(key + GetEngine().GetTranspose(slot))));
        };
        const int slot = GetEngine().IsSplit() && key < GetEngine().GetSplitPoint() ? 2 : 0;
        play(slot);
        if (slot == 0 && GetEngine().IsDual()) {
            play(1);
        }
    }

    /// A key goes down or up. A note-off ends the note of another key that plays the same; an arpeggiator takes keys
    /// over.
    void Follow(int key, bool down) {
        const bool sounds = down && !GetEngine().IsArpeggiating() && IsWritten();
        ForEachVoice(key, [&](std::size_t channel, std::size_t note) { due_[channel].set(note, sounds); });
    }
    bool IsWritten() {
        const int open = GetEngine().GetOutputPortIndex();
        return open >= 0 && !GetEngine().IsOutputLost() && !studio_->FailsToWrite(static_cast<std::size_t>(open));
    }

    void Play() {
        switch (Draw(3)) {
            case 0:
                return PlayOnScreen();
            case 1:
                return PlayOnComputer();
            default:
                return Draw(12) == 0 ? BindPad() : PlayExternally();
        }
    }

    void BindPad() {
        const auto pad = static_cast<std::uint8_t>(PlayedKeyboards::kFirstPad + Draw(PlayedKeyboards::kPads));
        const int keyboard = Draw(static_cast<int>(Studio::kKeyboards));
        if (keyboards_.IsBound(keyboard, pad)) {
            Name("unbind", pad);
            keyboards_.Bind(keyboard, pad, std::nullopt);
        } else {
            const std::uint8_t channel = DrawChannel(pad);
            Name("bind on channel", channel);
            Name("of keyboard", keyboard);
            Name("pad", pad);
            keyboards_.Bind(keyboard, pad, channel);
        }
        GetEngine().WithExtras([&](Kivora::EngineExtras& extras) {
            extras.controls.SetBindings(keyboards_.GetBindings());
            while (extras.controls.TakeNext()) {
            }
        });
    }

    void PlayOnScreen() {
        std::uint8_t note = DrawNote();
        if (Toss() && !screen_[note]) {
            Name("screen on", note);
            screen_.set(note);
            Follow(note, true);
            GetEngine().PlayNoteOn(note, DrawVelocity());
        } else if (DrawHeld(screen_, note)) {
            if (Draw(8) == 0) {
                GetEngine().PlayAfterTouch(note, DrawVelocity());
                return;
            }
            Name("screen off", note);
            Follow(note, false);
            GetEngine().PlayNoteOff(note);
            screen_.set(note, Toss());
            if (screen_[note]) {
                Name("and on again");
                Follow(note, true);
                GetEngine().PlayNoteOn(note, DrawVelocity());
            }
        }
    }

    void PlayOnComputer() {
        std::uint8_t note = DrawNote();
        if (Toss() && !computer_[note]) {
            Name("computer on", note);
            computer_.set(note);
            Follow(note, true);
            GetEngine().PlayPcKey(note, Draw(3));
        } else if (DrawHeld(computer_, note)) {
            Name("computer off", note);
            computer_.reset(note);
            Follow(note, false);
            GetEngine().PlayNoteOff(note);
        }
    }

    void PlayExternally() {
        if (!HasInput()) {
            return;
        }
        const int keyboard = DrawOneOf(GetKeyboards());
        std::vector<LibMidi::MIDIEvent> events;
        const auto channel = static_cast<std::uint8_t>(Draw(16));
        for (int i = 1 + Draw(4); i > 0; --i) {
            const std::vector<PlayedKeyboards::Key> pressed = keyboards_.GetPressed(keyboard);
            if (Toss()) {
                const std::uint8_t note = DrawNote();
                const PlayedKeyboards::Key key{keyboard, DrawChannel(note), note};
                const bool isHeard = keyboards_.Press(key);
                NameKey(isHeard ? "external on" : "silent on", key);
                if (isHeard) {
                    Follow(note, true);
                }
                events.emplace_back(0U, OnChannel(0x90, key), note, DrawVelocity());
            } else if (!pressed.empty()) {
                Release(DrawOneOf(pressed), events);
            } else {
                AddControls(events, keyboard, channel);
            }
        }
        if (!events.empty()) {
            PlayInput(keyboard, events);
        }
    }
    static std::uint8_t OnChannel(std::uint8_t kind, const PlayedKeyboards::Key& key) {
        return static_cast<std::uint8_t>(kind | key.channel);
    }
    void NameKey(const char* name, const PlayedKeyboards::Key& key) {
        Name((std::string(name) + " (keyboard " + std::to_string(key.keyboard) + ", channel " +
              std::to_string(key.channel) + ")")
                 .c_str(),
             key.note);
    }
    void Release(const PlayedKeyboards::Key& key, std::vector<LibMidi::MIDIEvent>& events) {
        if (keyboards_.IsSilent(key)) {
            NameKey("silent off", key);
            events.emplace_back(0U, OnChannel(0xA0, key), key.note, DrawVelocity());
        } else {
            NameKey("external off", key);
        }
        if (keyboards_.Release(key)) {
            Follow(key.note, false);
        }
        events.emplace_back(0U, OnChannel(Toss() ? 0x80 : 0x90, key), key.note, std::uint8_t{0});
    }

    /// A wheel, pressure, controller or patch that moves several times.
    void AddControls(std::vector<LibMidi::MIDIEvent>& events, int keyboard, std::uint8_t channel) {
        static constexpr std::uint8_t kKinds[] = {0xA0, 0xB0, 0xC0, 0xD0, 0xE0};
        static constexpr std::uint8_t kControllers[] = {0, 1, 7, 11, 32, 120, 121, 123};
        const auto status = static_cast<std::uint8_t>(kKinds[Draw(stripAlone_ ? 4 : 5)] | channel);
        for (int i = 1 + Draw(5); i > 0; --i) {
            std::uint8_t first = DrawNote();
            if ((status & 0xF0) == 0xB0) {
                first = kControllers[Draw(8)];
                first = stripAlone_ && (first == 1 || first == 11) ? 7 : first;
                Name("controller", first);
                if (first == 120 || first == 123) {
                    due_ = {};
                    keyboards_.EndHeard(keyboard, channel);
                } else if (first == 121) {
                    spaceDue_ = false;
                    panelPedalDue_ = false;
                    externalPedals_ = {};
                    externalPedalsDue_.reset();
                    externalSostenuto_ = false;
                    strip_ = {};
                }
            }
            events.emplace_back(0U, status, first, static_cast<std::uint8_t>(Draw(128)));
        }
    }

    /// As the foot has it that holds it most.
    std::uint8_t GetExternalPedal() const { return *std::max_element(externalPedals_.begin(), externalPedals_.end()); }

    void MovePedal() {
        if (Toss() || !HasInput()) {
            if (Toss()) {
                space_ = !space_;
                Name("space", space_ ? 1 : 0);
                controls_->SetSustain(space_);
                spaceDue_ = space_;
            } else {
                panelPedal_ = !panelPedal_;
                Name("panel's pedal", panelPedal_ ? 1 : 0);
                controls_->SetPanelSustain(panelPedal_);
                panelPedalDue_ = panelPedal_;
            }
        } else if (Draw(3) == 0) {
            externalSostenuto_ = !externalSostenuto_;
            AllowToKeep();
            Name("sostenuto", externalSostenuto_ ? 1 : 0);
            PlayInput(0xB7, 66, externalSostenuto_ ? 127 : 0);
        } else {
            const int keyboard = DrawOneOf(GetKeyboards());
            std::uint8_t& pedal = externalPedals_[static_cast<std::size_t>(keyboard)];
            pedal = pedal == 0 ? DrawVelocity() : std::uint8_t{0};
            constexpr std::uint8_t kDown = 64;
            externalPedalsDue_.set(static_cast<std::size_t>(keyboard), pedal >= kDown);
            Name(keyboard == 0 ? "pedal" : "other pedal", pedal);
            PlayInput(keyboard, {{0U, 0xB3, 64, pedal}});
        }
    }

    /// A wheel or pedal of the panel's own; the pitch mostly springs back.
    void MoveStrip() {
        const Kivora::EWheel wheel = Kivora::PanelWheels::kAll[static_cast<std::size_t>(Draw(5))];
        Name("strip", static_cast<int>(wheel));
        for (int i = 1 + Draw(4); i > 0; --i) {
            MoveStrip(wheel,
                      wheel == Kivora::EWheel::kPitch ? Draw(Kivora::PanelWheels::kPitchHighest + 1) : Draw(128));
        }
        if (Draw(3) != 0) {
            Name("springs back");
            MoveStrip(wheel, Kivora::PanelWheels::RestOf(wheel));
        }
        if (Draw(10) == 0) {
            Name("bend range");
            controls_->SetBendRange(1 + Draw(24));
        }
    }
    void MoveStrip(Kivora::EWheel wheel, int value) {
        if (wheel == Kivora::EWheel::kSostenuto) {
            AllowToKeep();
        }
        strip_.Set(wheel, value);
        isStripKnown_.set(static_cast<std::size_t>(wheel));
        controls_->SetWheel(wheel, value);
    }
    /// The sostenuto pedal is moved: what is down now it may keep.
    void AllowToKeep() {
        rig_.RunPlayer();
        for (const SynthModel& synth : synths_) {
            for (int channel = 0; channel < SynthModel::kChannels; ++channel) {
                mayBeKept_[static_cast<std::size_t>(channel)] |= synth.GetPressed(channel);
            }
        }
    }
    void RestStrip() {
        strip_ = {};
        isStripKnown_.set();
    }

    void ChangeSettings() {
        const int slot = Draw(3);
        const int choice = Draw(16);
        Name("setting", choice);
        if (choice < 3 || (choice > 4 && choice < 8) || choice == 11) {
            due_ = {};  // it may end all notes
        }
        switch (choice) {
            case 0:
                return controls_->SetVoiceMode(Toss(), Draw(3) == 0);
            case 1:
                return controls_->TransposeUp(slot);
            case 2:
                return controls_->TransposeDown(slot);
            case 3:
                return SetPatch(slot, [&] { Toss() ? controls_->NextPatch(slot) : controls_->PrevPatch(slot); });
            case 4:
                return SetPatch(slot, [&] { controls_->SetPatch(Draw(3) == 0 ? -1 : Draw(128), slot); });
            case 5:
                return controls_->SetArpeggiating(Toss());
            case 6:
                return controls_->ChangeArpeggiator(Draw(2),
                                                    [this](auto& arpeggiator) { arpeggiator.SetBypassed(Toss()); });
            case 7:
                return controls_->ChangeArpeggiator(Draw(2), [this](auto& arpeggiator) {
                    arpeggiator.SetDirection(Draw(9));
                    arpeggiator.SetExtension(Draw(4));
                    arpeggiator.SetNoteStep(16 + Draw(384), 10 + Draw(200));
                    arpeggiator.SetLatch(Toss());
                    arpeggiator.SetSwing(50 + Draw(26));
                });
            case 8:
                return GetEngine().SetTempo(40 + Draw(181));
            case 9:
                return GetEngine().SetMetronome(Toss());
            case 10:
                return GetEngine().SetClick({.sound = static_cast<Kivora::ClickSettings::Sound>(Draw(2)),
                                             .beatsPerBar = 1 + Draw(12),
                                             .countInBars = Draw(3)});
            case 11:
                return controls_->SetSplitPoint(Draw(3) == 0 ? Draw(128) : 48 + Draw(24));
            case 12:
                return controls_->HearNote(slot, DrawNote(), DrawVelocity());
            case 13:
                return controls_->EndHeardNote();
            case 14:
                return controls_->TapTempo();
            default:
                return Toss() ? GetEngine().VolumeUp(slot) : GetEngine().VolumeDown(slot);
        }
    }

    template <class Change>
    void SetPatch(int slot, Change change) {
        const bool wasPercussion = GetEngine().GetPatch(slot) < 0;
        change();
        if ((GetEngine().GetPatch(slot) < 0) != wasPercussion) {
            due_ = {};
        }
    }

    /// Something is played back, on channels that no voice has, or on all of them: then a held key may be ended by the
    /// song's note-off.
    void PlayBack() {
        using Song = Kivora::SongPlayer;
        const int choice = Draw(9);
        Name("song", choice);
        switch (choice) {
            case 0:
                return Toss() ? song_->Open(DrawSong()) : song_->OpenToListen(DrawSong());
            case 1:
                return song_->Pause();
            case 2:
                return song_->Stop();
            case 3:
                return song_->Seek(Draw(2200) * 1000);
            case 4:
                return song_->SetLoop(Toss() ? std::nullopt : std::optional(Song::Loop{Draw(1000) * 1000, 1'500'000}));
            case 5:
                song_->SetTempo(25 + Draw(176));
                return song_->SetTransposition(Draw(49) - 24);
            default:
                if (!song_->GetSong()) {
                    song_->Open(DrawSong());
                }
                song_->Play();
        }
    }

    std::shared_ptr<const Kivora::Song> DrawSong() {
        static constexpr std::uint8_t kKinds[] = {0x80, 0x90, 0x90, 0x90, 0xA0, 0xB0, 0xB0, 0xC0, 0xD0, 0xE0};
        static constexpr std::uint8_t kControllers[] = {0,  1,  6,  7,   11,  32,  64,  64,
                                                        66, 67, 69, 100, 101, 120, 121, 123};
        static constexpr std::uint8_t kFree[] = {4, 5, 6, 7, 8, 9, 11, 12, 13, 14, 15, 16};
        std::vector<TimedMessage> messages;
        for (int i = Draw(300); i > 0; --i) {
            const std::uint8_t status = kKinds[Draw(10)];
            const auto channel = static_cast<std::uint8_t>(sharesChannels_ ? 1 + Draw(16) : kFree[Draw(12)]);
            const std::uint8_t first = status == 0xB0 ? kControllers[Draw(16)] : DrawNote();
            const auto second = static_cast<std::uint8_t>(Draw(3) == 0 ? 0 : Draw(128));
            messages.push_back({Draw(2000), {status, channel, first, second}});
        }
        return MakeSong(std::move(messages), 2000);
    }

    /// While nothing is played back: what that has begun has ended.
    void PauseSong() {
        isSongPaused_ = song_->GetStatus().state == Kivora::SongPlayer::State::kPlaying;
        song_->Pause();
    }

    void ActRarely() {
        const int choice = Draw(64);
        due_ = {};
        spaceDue_ = false;
        panelPedalDue_ = false;
        externalPedalsDue_.reset();
        if (choice < 10) {
            Name("preset");
            controls_->ReplaceVoices([this] { return LoadPreset(); });
        } else if (choice < 20) {
            Panic();
        } else if (choice < 26) {
            SetOutput();
        } else if (choice < 36) {
            SetInput();
        } else if (choice < 40) {
            Unplug();
        } else if (choice < 44) {
            Rescan();
        } else if (choice < 47) {
            Name("record");
            controls_->StartRecording();
        } else if (choice < 50) {
            Name("stop recording");
            GetEngine().StopRecording();
        } else if (choice < 55) {
            Name("all notes off");
            controls_->AllNotesOff();
        } else if (choice < 59) {
            if (HasInput()) {
                Name("input lost");
                ForgetInput();
                studio_->Lose(GetEngine().GetInputPortIndex());
            }
        } else if (choice < 63) {
            Replug();
        } else {
            Close();
        }
    }

    bool LoadPreset() {
        GetEngine().SetDual(Toss());
        GetEngine().SetSplit(Toss());
        GetEngine().SetSplitPoint(Draw(3) == 0 ? 40 + Draw(40) : 60);
        for (int slot = 0; slot < 3; ++slot) {
            GetEngine().SetPatch(Draw(4) == 0 ? -1 : Draw(128), slot);
        }
        GetEngine().SetArpeggiating(Toss());
        for (int index = 0; index < 2; ++index) {
            NK::CIniFile file;
            file.SelectOrAddSection(L"Arpeggiator");
            file.SetInt(L"Bypass", Draw(3) == 0 ? 1 : 0);
            file.SetInt(L"InChannel", Draw(3) == 0 ? 1 + Draw(4) : -1);
            file.SetInt(L"OutChannel", Draw(3) == 0 ? 1 + Draw(16) : -1);
            file.SetDouble(L"NoteLength", Draw(3) == 0 ? 0.0 : Draw(64));
            file.SetInt(L"NoteStep", 16 + Draw(384));
            file.SetInt(L"Direction", Draw(9));
            file.SetInt(L"Multiplication", Draw(4));
            file.SetInt(L"Extension", Draw(4));
            file.SetInt(L"Latch", Draw(3) == 0 ? 1 : 0);
            file.SetInt(L"Swing", 50 + Draw(26));
            GetEngine().WithArpeggiator(index, [&file](auto& arpeggiator) { arpeggiator.LoadSettings(file); });
        }
        return true;
    }

    void Panic() {
        Name("panic");
        RestStrip();
        controls_->Panic();
        rig_.RunPlayer();
        for (const SynthModel& synth : synths_) {
            if (synth.IsSounding() || synth.IsPedalDown()) {
                Fail("something sounds after a panic");
            }
        }
    }

    void SetOutput() {
        Name("output");
        ForgetSent();
        const auto index = static_cast<std::size_t>(Draw(2));
        if (studio_->FailsToWrite(index) && Toss()) {
            studio_->SetFailsToWrite(index, false);
        }
        studio_->SetFailsToOpen(index, Draw(5) == 0);
        const bool wasLost = GetEngine().IsOutputLost();
        try {
            controls_->SetOutputPortByIndex(static_cast<int>(index));
        } catch (const NK::CException&) {
            Name("failed");
            isStripKnown_.reset();
        }
        if (wasLost) {
            ForgetInput();  // it was opened anew
        }
    }

    void SetInput() {
        Name("input");
        const int index = Draw(studio_->CountInputs());
        const bool changes = index != GetEngine().GetInputPortIndex();
        controls_->SetInputPortByIndex(index);
        if (changes) {
            ForgetInput();
        }
    }

    void Unplug() {
        Name("unplug");
        ForgetSent();
        isStripKnown_.reset();
        const int index = GetEngine().GetOutputPortIndex();
        if (index >= 0) {
            studio_->SetFailsToWrite(static_cast<std::size_t>(index), true);
            synths_[static_cast<std::size_t>(index)].Clear();
        }
    }

    void Rescan() {
        Name("rescan");
        ForgetSent();
        const bool refused = GetEngine().IsRecording();
        RepairOutputs();
        controls_->RescanPorts();
        if (!refused) {
            ForgetInput();
        }
    }

    void Close() {
        Name("close");
        controls_->Close();
        song_.reset();
        controls_.reset();
        rig_.engine.reset();
        for (const SynthModel& synth : synths_) {
            if (synth.IsSounding() || synth.IsPedalDown()) {
                Fail("something sounds when the instrument is closed");
            }
            for (const int channel : kVoiceChannels) {
                CheckStrip(synth, channel, {});
            }
        }
        RepairOutputs();
        Begin();
    }

    void RepairOutputs() {
        for (std::size_t i = 0; i < Studio::kSynths; ++i) {
            studio_->SetFailsToWrite(i, false);
            studio_->SetFailsToOpen(i, false);
        }
    }

    /// All keyboards are pulled out with what they hold, and are back.
    void Replug() {
        const bool told = studio_->Replug([this] {
            GetEngine().UpdatePorts();
            GetEngine().LookAtInput();
        });
        if (told) {
            Name("replug");
            ForgetInput();
            GetEngine().UpdatePorts();
            GetEngine().LookAtInput();
            GetEngine().ReopenInputPort();
        }
    }

    /// What a key that is down may sound: per channel its notes.
    std::array<Keys, SynthModel::kChannels> GetAllowed() {
        std::array<Keys, SynthModel::kChannels> allowed{};
        const Keys held = screen_ | computer_ | keyboards_.GetHeld();
        for (int key = 0; key < 128; ++key) {
            if (held[static_cast<std::size_t>(key)]) {
                ForEachVoice(key, [&](std::size_t channel, std::size_t note) { allowed[channel].set(note); });
            }
        }
        return allowed;
    }

    /// Without the two notes that are the click's: each click ends what a key plays on them.
    static Keys WithoutClick(int channel, Keys keys) {
        if (channel == 9) {
            keys.reset(static_cast<std::size_t>(Kivora::ClickSettings().barNote));
            keys.reset(static_cast<std::size_t>(Kivora::ClickSettings().beatNote));
        }
        return keys;
    }

    /// Each key that went down since the last silence, and was not ended by a rule, sounds on each of its voices.
    void CheckDue() {
        if (!IsWritten()) {
            return;
        }
        const SynthModel& synth = synths_[static_cast<std::size_t>(GetEngine().GetOutputPortIndex())];
        for (int channel = 0; channel < SynthModel::kChannels; ++channel) {
            const Keys silent =
                WithoutClick(channel, due_[static_cast<std::size_t>(channel)] & ~synth.GetPressed(channel));
            if (silent.any()) {
                Fail("a held key is silent on channel " + std::to_string(channel) + ": " + silent.to_string());
            }
        }
    }

    /// The output stands as if each message had reached it when it was sent.
    void CheckSent() {
        sent_.EndTimed();
        if (!IsWritten()) {
            isSentKnown_ = false;
            return;
        }
        const SynthModel& synth = synths_[static_cast<std::size_t>(GetEngine().GetOutputPortIndex())];
        for (int channel = 0; isSentKnown_ && channel < SynthModel::kChannels; ++channel) {
            if (WithoutClick(channel, synth.GetPressed(channel) ^ sent_.GetSynth().GetPressed(channel)).any()) {
                Fail("notes of channel " + std::to_string(channel) + " are not as they were sent");
            }
            if (!(synth.GetControls(channel) == sent_.GetSynth().GetControls(channel))) {
                Fail("controls of channel " + std::to_string(channel) + " are not as they were sent last");
            }
        }
        sent_.Take(synth);
        isSentKnown_ = true;
    }

    /// Once everything is written and what the arpeggiators play has ended, what is held sounds and nothing else.
    void CheckAtRest() {
        Name("rest");
        PauseSong();
        controls_->EndHeardNote();
        rig_.Run(2);
        GetEngine().EndTimedNotes();
        rig_.RunPlayer();
        CheckDue();
        CheckSent();
        const std::array<Keys, SynthModel::kChannels> allowed = GetAllowed();
        const int open = GetEngine().GetOutputPortIndex();
        for (int i = 0; i < 2; ++i) {
            const SynthModel& synth = synths_[static_cast<std::size_t>(i)];
            if (i != open && (synth.IsSounding() || synth.IsPedalDown())) {
                Fail("something sounds on a port that is not open");
            }
            for (int channel = 0; channel < SynthModel::kChannels; ++channel) {
                const Keys hung = synth.GetPressed(channel) & ~allowed[static_cast<std::size_t>(channel)];
                if (hung.any()) {
                    Fail("a note hangs on channel " + std::to_string(channel) + ": " + hung.to_string());
                }
            }
            if (synth.IsPedalDown() && !space_ && !panelPedal_ && GetExternalPedal() == 0) {
                Fail("the pedal hangs");
            }
            if ((spaceDue_ || panelPedalDue_ || externalPedalsDue_.any()) && i == open && IsWritten() &&
                !synth.IsPedalDown(GetEngine().VoiceChannel(0))) {
                Fail("a pedal that is down holds nothing");
            }
            for (const int channel : kVoiceChannels) {
                const Keys kept = synth.GetKept(channel) & ~mayBeKept_[static_cast<std::size_t>(channel)];
                if (!sharesChannels_ && kept.any()) {  // a song presses that pedal too
                    Fail("the sostenuto pedal keeps what it was not pressed for on channel " + std::to_string(channel) +
                         ": " + kept.to_string());
                }
            }
            if (synth.IsSostenutoDown() && !externalSostenuto_ && strip_.IsAtRest(Kivora::EWheel::kSostenuto)) {
                Fail("the sostenuto pedal hangs");
            }
        }
        CheckStrip();
        if (isSongPaused_ && Toss()) {
            song_->Play();
        }
    }

    /// What a voice plays on stands as the strip says, and what none plays on is at rest, where nobody else moves it.
    void CheckStrip() {
        const int open = GetEngine().GetOutputPortIndex();
        for (int i = 0; i < 2; ++i) {
            for (const int channel : kVoiceChannels) {
                bool isPlayed = false;
                for (int slot = 0; slot < 3; ++slot) {
                    isPlayed = isPlayed || (i == open && GetEngine().VoiceChannel(slot) == channel);
                }
                CheckStrip(synths_[static_cast<std::size_t>(i)], channel, isPlayed ? strip_ : Kivora::PanelWheels(),
                           isPlayed && !IsWritten());
            }
        }
    }
    void CheckStrip(const SynthModel& synth, int channel, const Kivora::PanelWheels& expected,
                    bool isRestOnly = false) {
        using enum Kivora::EWheel;
        const SynthModel::Controls& controls = synth.GetControls(channel);
        for (const auto& [wheel, value] :
             {std::pair(kPitch, controls.wheel), std::pair(kModulation, int{controls.controller[1]}),
              std::pair(kExpression, int{controls.controller[SynthModel::kExpression]}),
              std::pair(kSoft, int{controls.controller[67]})}) {
            const bool isKnown = !isRestOnly && isStripKnown_[static_cast<std::size_t>(wheel)];
            if (stripAlone_ && (isKnown || expected.IsAtRest(wheel)) && value != expected.Get(wheel)) {
                Fail("channel " + std::to_string(channel) + " has " + std::to_string(value) + " and not " +
                     std::to_string(expected.Get(wheel)) + " of wheel " + std::to_string(static_cast<int>(wheel)));
            }
        }
    }

    /// Every key and pedal goes up; then nothing sounds, and for the longest step of an arpeggio nothing is played.
    void LetGo() {
        Name("let go");
        song_->Stop();
        const bool hasInput = HasInput();
        for (int i = 0; i < 128; ++i) {
            const auto note = static_cast<std::uint8_t>(i);
            if (screen_[note]) {
                GetEngine().PlayNoteOff(note);
            }
            if (computer_[note]) {
                GetEngine().PlayNoteOff(note);
            }
        }
        for (const int keyboard : hasInput ? GetKeyboards() : std::vector<int>()) {
            for (const PlayedKeyboards::Key& key : keyboards_.GetPressed(keyboard)) {
                PlayInput(keyboard, {{0U, OnChannel(0x80, key), key.note, 0}});
            }
        }
        screen_.reset();
        computer_.reset();
        due_ = {};
        if (hasInput) {
            for (const int keyboard : GetKeyboards()) {
                PlayInput(keyboard, {{0U, 0xB3, 64, 0}});
            }
            PlayInput(0xB7, 66, 0);
        }
        ForgetInput();
        space_ = false;
        spaceDue_ = false;
        panelPedal_ = false;
        panelPedalDue_ = false;
        RestStrip();
        controls_->RestWheelsAndPedals();
        controls_->SetSustain(false);
        mayBeKept_ = {};
        GetEngine().SetClick({});
        rig_.Run(2);
        GetEngine().EndTimedNotes();
        rig_.RunPlayer();
        for (int i = 0; i < 3200; ++i) {
            for (const SynthModel& synth : synths_) {
                if (synth.IsSounding() || synth.IsPedalDown()) {
                    return Fail("something sounds although every key is up");
                }
            }
            rig_.Run(1);
        }
    }

    std::mt19937 random_;
    EngineRig rig_;
    const std::unique_ptr<Studio> studio_;
    std::array<SynthModel, 2> synths_;
    SentModel sent_;
    bool isSentKnown_ = false;                       ///< whether it can be compared with what the open output sounds
    std::array<Keys, SynthModel::kChannels> due_{};  ///< what must sound
    std::unique_ptr<Kivora::EngineControls> controls_;
    std::unique_ptr<Kivora::SongPlayer> song_;
    const bool sharesChannels_;  ///< what is played back, with the voices
    const bool stripAlone_;      ///< neither the keyboard nor what is played back moves its wheels
    bool isSongPaused_ = false;  ///< at the last rest
    Keys screen_;
    Keys computer_;
    PlayedKeyboards keyboards_;
    bool space_ = false;
    bool spaceDue_ = false;  ///< nothing has lifted what it holds
    bool panelPedal_ = false;
    bool panelPedalDue_ = false;
    std::array<Keys, SynthModel::kChannels> mayBeKept_{};  ///< by a sostenuto pedal
    std::array<std::uint8_t, Studio::kKeyboards> externalPedals_{};
    std::bitset<Studio::kKeyboards> externalPedalsDue_;  ///< of which nothing has lifted what they hold
    bool externalSostenuto_ = false;
    Kivora::PanelWheels strip_;
    std::bitset<5> isStripKnown_;  ///< which of them the output has been told of
    int actions_ = 0;
    std::deque<std::string> last_;
    std::string failure_;
};

template <class Kind>
std::unique_ptr<Studio> Make(EngineRig& rig) {
    return std::make_unique<Kind>(rig);
}

void PlayAtRandom(const Musician::MakeStudio& makeStudio, int actions) {
    constexpr int kSeeds = 10;
    const char* const wanted = std::getenv("KIVORA_HUNG_NOTE_SEEDS");
    const auto seeds = static_cast<std::uint32_t>(wanted != nullptr ? std::atoi(wanted) : kSeeds);
    ASSERT_GT(seeds, 0U) << wanted << " is no number of seeds";
    for (std::uint32_t seed = 1; seed <= seeds; ++seed) {
        Musician musician(makeStudio, seed);
        for (int i = 0; i < actions / kSeeds; ++i) {
            musician.Act();
            ASSERT_EQ(musician.GetFailure(), "") << "seed " << seed << ", " << musician.Describe();
        }
    }
}

}  // namespace

TEST(HungNotes, WhatIsHeldSoundsWhateverSoundsIsHeldOrArpeggiatedAndWhatWasSentLastStands) {
    PlayAtRandom(&Make<FakeStudio>, kActions);
}

TEST(HungNotes, TheSameThroughPortMidi) {
    PlayAtRandom(&Make<PortMidiStudio>, kActions / 4);
}

TEST(HungNotes, TheSameThroughTheSequencer) {
    PlayAtRandom(&Make<AlsaStudio>, kActions / 4);
}
