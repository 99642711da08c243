#include "engine/EngineControls.h"

#include "engine/SongPlayback.h"
#include "engine/TakeJournal.h"
#include "midi/MIDIControllers.h"
#include "nk/nk_exception.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

using NK::MIDI::TMIDIMessage;

EngineControls::EngineControls(CKivora& engine) : engine_(engine) {
    connection_ = QObject::connect(&engine_, &CKivora::OnMIDIEvent, [this](int word) {
        const auto message = TMIDIMessage::FromWord(static_cast<std::uint32_t>(word));
        wheels_.Follow(message);
        if (message.status != TMIDIMessage::kControlChange) {
            return;
        }
        if (message.data1 == NK::MIDI::Controller::kSustain) {
            pedal_ = message.data2;
        } else if (message.data1 == NK::MIDI::Controller::kResetControllers) {
            pedal_ = 0;
        }
    });
    engine_.KeepOrder();
}

EngineControls::~EngineControls() {
    // Under the lock, with which every message is emitted: none is being told to this object.
    engine_.WithLock([this] { QObject::disconnect(connection_); });
}

void EngineControls::Silence() {
    NK_ASSERT_THREAD_ROLE(gui);
    engine_.SettleOutput();
    if (pedal_ != 0) {
        engine_.SetSustain(false);
    }
    RestWheels();
    engine_.LiftInputHolds();
    engine_.AllNotesOff();
    engine_.EndTimedNotes();
    engine_.SettleOutput();
}

void EngineControls::HoldPedal(bool PedalHolders::*holder, bool on) {
    engine_.WithLock([&] {
        const std::uint8_t value = engine_.WithExtras([&](EngineExtras& extras) {
            extras.pedal.*holder = on;
            return extras.pedal.GetValue();
        });
        engine_.SendSustain(value);  // where others hold it too, it says so to whoever shows it
    });
}

void EngineControls::ForgetPedal() {
    engine_.WithExtras([](EngineExtras& extras) {
        extras.pedal = {};
        extras.heard.ForgetPedal(NK::MIDI::Controller::kSustain);
    });
}

void EngineControls::Restore(const Held& held) {
    if (held.pedal != 0) {
        engine_.SendSustain(held.pedal);
    }
    for (const EWheel wheel : PanelWheels::kAll) {
        if (held.wheels.IsMoved(wheel)) {
            SetWheel(wheel, held.wheels.Get(wheel));
        }
    }
}

void EngineControls::SetWheel(EWheel wheel, int value) {
    engine_.WithLock([&] {
        engine_.PlayControl(PanelWheels::ToMessage(wheel, value));
        wheels_.Set(wheel, value);  // after the message, which is followed as anybody's
    });
}

void EngineControls::RestWheels() {
    engine_.WithLock([this] {
        for (const EWheel wheel : PanelWheels::kAll) {
            if (!wheels_.IsAtRest(wheel)) {
                SetWheel(wheel, PanelWheels::RestOf(wheel));
            }
        }
    });
}

void EngineControls::RestWheelsAndPedals() {
    engine_.WithLock([this] {
        RestWheels();
        if (engine_.WithExtras([](const EngineExtras& extras) { return extras.pedal.strip; })) {
            SetPanelSustain(false);
        }
    });
}

void EngineControls::SetBendRange(int semitones) {
    engine_.WithLock([&] {
        engine_.WithExtras([semitones](EngineExtras& extras) { extras.bendRange.Choose(semitones); });
        engine_.SendBendRange();
    });
}

int EngineControls::GetBendRange() const {
    return engine_.WithExtras([](const EngineExtras& extras) { return extras.bendRange.Get(); });
}

void EngineControls::PauseSong() {
    // The hold of the engine, at whose end the tick may rest.
    engine_.WithLock([this] { engine_.WithExtras([](EngineExtras& extras) { extras.song.Pause(); }); });
}

void EngineControls::StopSong() {
    engine_.WithLock([this] { engine_.WithExtras([](EngineExtras& extras) { extras.song.Stop(); }); });
}

void EngineControls::AllNotesOff() {
    engine_.WithLock([&] {
        const Held held = GetHeld();
        Silence();
        Restore(held);
    });
}

void EngineControls::Panic() {
    engine_.WithLock([&] {
        StopSong();
        Silence();
        ForgetPedal();
        engine_.ResetSynth();
    });
}

void EngineControls::SetVoiceMode(bool dual, bool split) {
    engine_.WithLock([&] {
        engine_.SetDual(dual);
        engine_.SetSplit(split);
    });
}

void EngineControls::ChangePatch(int slot, int patch) {
    const bool crosses = VoiceSlots::IsPercussion(patch) != VoiceSlots::IsPercussion(engine_.GetPatch(slot));
    const Held held = GetHeld();
    if (crosses) {
        Silence();
    }
    engine_.SetPatch(patch, slot);
    if (crosses) {
        engine_.SendBendRange();
        Restore(held);
    }
}

void EngineControls::StepPatch(int slot, int patch) {
    ChangePatch(slot, patch);
    engine_.WithExtras([=](EngineExtras& extras) { extras.stepped.Step(slot, patch); });
}

void EngineControls::SetPatch(int patch, int slot) {
    engine_.WithLock([&] { ChangePatch(slot, patch); });
}

void EngineControls::NextPatch(int slot) {
    engine_.WithLock([&] { StepPatch(slot, VoiceSlots::GetNextPatch(engine_.GetPatch(slot))); });
}

void EngineControls::PrevPatch(int slot) {
    engine_.WithLock([&] { StepPatch(slot, VoiceSlots::GetPreviousPatch(engine_.GetPatch(slot))); });
}

void EngineControls::TapTempo() {
    if (const std::optional<int> tempo = engine_.Tap()) {
        engine_.SetTempoInBar(*tempo);
    }
}

void EngineControls::ChangeTempo(int tempo) {
    if (IsArpeggioPlaying()) {
        engine_.SetTempoInBar(tempo);
    } else {
        engine_.SetTempo(tempo);
    }
}

bool EngineControls::IsArpeggioPlaying() {
    bool plays = false;
    for (int index = 0; engine_.IsArpeggiating() && index < CKivora::kArpeggiatorCount; ++index) {
        plays = plays || engine_.WithArpeggiator(
                             index, [](const NK::MIDI::CArpeggiator1& arpeggiator) { return arpeggiator.IsPlaying(); });
    }
    return plays;
}

void EngineControls::ChangeArpeggiator(int index, const std::function<void(NK::MIDI::CArpeggiator1&)>& change) {
    engine_.WithArpeggiator(index, [&](NK::MIDI::CArpeggiator1& arpeggiator) {
        const auto hears = [&arpeggiator] {
            return std::pair(arpeggiator.IsBypassed(), arpeggiator.GetSettings().inChannel);
        };
        const auto before = hears();
        change(arpeggiator);
        if (hears() != before) {
            engine_.AllNotesOff();
        }
        RaiseGates();
    });
}

void EngineControls::RaiseGates() {
    for (int index = 0; index < CKivora::kArpeggiatorCount; ++index) {
        engine_.WithArpeggiator(index, [](NK::MIDI::CArpeggiator1& arpeggiator) {
            if (!(arpeggiator.GetDurationPercent() > 0)) {
                arpeggiator.SetDurationPercent(kSmallestGatePercent);
            }
        });
    }
}

bool EngineControls::ReplaceVoices(const std::function<bool()>& load) {
    return engine_.WithLock([&] {
        const Held held = GetHeld();
        Silence();
        const bool loaded = load();
        RaiseGates();
        engine_.SendVolumes();
        Restore(held);
        return loaded;
    });
}

bool EngineControls::LoadPreset(const NK::CString& name, bool factory) {
    NK::CIniFile file;
    return engine_.ReadPreset(name, factory, file) && ApplyPreset(name, file);
}

bool EngineControls::ApplyPreset(const NK::CString& name, NK::CIniFile& file) {
    return ReplaceVoices([&] {
        engine_.WithExtras([](EngineExtras& extras) { extras.presets.ForgetStepped(); });
        return engine_.ApplyPreset(name, file);
    });
}

void EngineControls::NotePreset(const NK::CString& name, bool factory) {
    engine_.WithExtras([&](EngineExtras& extras) { extras.presets.Note(name, factory); });
}

void EngineControls::NoteSteppedPreset(const NK::CString& name, bool factory) {
    engine_.WithExtras([&](EngineExtras& extras) { extras.presets.Step(name, factory); });
}

void EngineControls::SortPresetsByUse(bool on) {
    engine_.WithExtras([on](EngineExtras& extras) { extras.presets.sortsByUse = on; });
}

void EngineControls::SetVelocityWays(const VelocityCurve& input, bool screenByHeight) {
    engine_.WithExtras([&](EngineExtras& extras) {
        extras.velocity.SetCurve(input);
        extras.heightIsVelocity = screenByHeight;
    });
}

void EngineControls::KeepPlayed(bool on) {
    engine_.WithExtras([on](EngineExtras& extras) { extras.KeepPlayed(on); });
}

void EngineControls::SetSavesTempo(bool on) {
    engine_.WithExtras([on](EngineExtras& extras) { extras.savesTempo = on; });
}

void EngineControls::SetFavoritePatch(int patch, bool on) {
    engine_.WithExtras([=](EngineExtras& extras) { extras.patches.SetFavorite(patch, on); });
}

void EngineControls::NotePatch(int patch) {
    engine_.WithExtras([patch](EngineExtras& extras) { extras.patches.NoteUse(patch); });
}

bool EngineControls::LoadSettings() {
    engine_.WithLock([this] { Silence(); });
    const bool loaded = engine_.LoadSettings();
    RaiseGates();
    return loaded;
}

bool EngineControls::ChangeOutput(const std::function<bool()>& change) {
    const Held held = GetHeld();
    Silence();
    if (!engine_.IsOutputReady()) {
        engine_.DiscardQueued();
    }
    bool changed = false;
    try {
        changed = change();
    } catch (...) {
        Restore(held);  // for the output that is opened next
        throw;
    }
    engine_.EndStrandedNotes();
    Restore(held);
    return changed;
}

bool EngineControls::SetOutputPortByIndex(int index) {
    const bool opened = SwitchOutput(index);
    // What was written last on the former port may have failed, and the same port reach nothing since then.
    engine_.LookAtOutput();
    return opened && engine_.IsOutputLost() ? SwitchOutput(index) : opened;
}

bool EngineControls::SwitchOutput(int index) {
    return engine_.WithLock([&] {
        if (engine_.IsOutputLost()) {
            // Before the pedal is looked at: the input's is not to be pressed again in its place.
            engine_.ReleaseInputKeys();
            return ChangeOutput([&] { return ReplaceLostOutput(index); });
        }
        return ChangeOutput([&] { return engine_.SetOutputPortByIndex(index); });
    });
}

bool EngineControls::ReplaceLostOutput(int index) {
    const NK::CStringArray names = engine_.GetOutputPortNames();
    if (index < 0 || index >= static_cast<int>(names.GetSize())) {
        return false;
    }
    const NK::CString lost = engine_.GetOutputPortName();
    engine_.CloseOutputPort();
    const auto keepName = [&] {
        if (engine_.GetOutputPortIndex() < 0) {
            engine_.SetSavedOutputPortName(lost);
        }
    };
    engine_.SetSavedOutputPortName(names[static_cast<std::uint32_t>(index)]);
    try {
        engine_.RescanPorts();
    } catch (const NK::CException&) {
        keepName();
        throw;
    }
    keepName();
    return engine_.GetOutputPortIndex() >= 0;
}

bool EngineControls::SetInputPortByIndex(int index) {
    return engine_.WithLock([&] {
        if (index != engine_.GetInputPortIndex()) {
            engine_.ReleaseInputKeys();
        }
        return engine_.SetInputPortByIndex(index);
    });
}

void EngineControls::OpenPorts() {
    engine_.WithLock([&] {
        engine_.ReleaseInputKeys();
        ChangeOutput([&] {
            try {
                engine_.OpenPorts();
            } catch (const NK::CException&) {
                OpenRemainingPorts();
                throw;
            }
            return true;
        });
    });
}

void EngineControls::OpenRemainingPorts() {
    const auto attempt = [](auto open) {
        try {
            open();
        } catch (const NK::CException&) {
            // The first failure is the one that is told.
        }
    };
    if (engine_.GetInputPortIndex() < 0) {
        attempt([this] { engine_.SetInputPortByName(engine_.GetInputPortName()); });
    }
    if (engine_.GetOutputPortName().IsEmpty()) {
        attempt([this] { engine_.SetOutputPortByName(engine_.GetDefaultOutputPortName()); });
    }
}

bool EngineControls::RescanPorts() {
    return engine_.WithLock([&] {
        if (engine_.IsRecording()) {
            return false;
        }
        engine_.ReleaseInputKeys();
        return ChangeOutput([&] { return engine_.RescanPorts(); });
    });
}

bool EngineControls::ReopenOutput() {
    return engine_.WithLock([&] {
        const bool opened = engine_.ReopenOutputPort();
        if (opened) {
            Restore(GetHeld());
        }
        return opened;
    });
}

bool EngineControls::StartRecording() {
    return engine_.WithLock([&] {
        const Held held = GetHeld();
        const bool started = engine_.StartRecording();
        if (started) {
            Restore(held);
            engine_.BeginCountIn();
        }
        return started;
    });
}

bool EngineControls::StopRecording() {
    return engine_.WithLock([&] {
        engine_.SettleOutput();
        return engine_.StopRecording();
    });
}

bool EngineControls::SaveRecording(const NK::CString& path) {
    StopRecording();
    return engine_.SaveRecording(path);
}

void EngineControls::KeepTakes(const NK::CString& folder) {
    takes_.reset();  // before another one looks for what waits
    takes_ = std::make_unique<TakeJournal>(engine_, folder);
}

bool EngineControls::SaveTake(int id, const NK::CString& path, bool onGrid) {
    return takes_->Save(id, path, onGrid);
}

bool EngineControls::SaveLatestTake(const NK::CString& path, bool onGrid) {
    return takes_->SaveLatest(path, onGrid);
}

bool EngineControls::RefuseTake(int id) {
    return takes_->Refuse(id);
}

void EngineControls::WriteOutTakes() {
    takes_->WriteOut();
}

std::vector<LostJournal> EngineControls::TakeLostJournals() {
    return takes_->TakeLost();
}

void EngineControls::FallSilent() {
    engine_.WithLock([&] {
        PauseSong();
        engine_.ReleaseInputKeys();
        ForgetPedal();
        Silence();
    });
}

void EngineControls::Close() {
    engine_.WithLock([&] {
        StopSong();
        // The indicators go on, which tell what is saved; but no beat is to sound after the silence.
        engine_.WithExtras([](EngineExtras& extras) {
            extras.click.SetMetronome(false);
            extras.click.EndCountIn();
        });
        engine_.ReleaseInputKeys();
        engine_.CloseInputPort();
        ForgetPedal();
        Silence();
        if (engine_.HasOutputFailed()) {
            engine_.CloseOutputPort();
        }
        if (engine_.HasStrandedNotes()) {
            engine_.EndStrandedNotesAtLast();
        }
    });
}

}  // namespace Kivora
