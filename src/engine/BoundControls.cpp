#include "engine/BoundControls.h"

#include <algorithm>
#include <utility>

#include "midi/MIDIControllers.h"

namespace Kivora {

namespace {
constexpr int kPressed = NK::MIDI::Controller::kSwitchOn;
constexpr int kHighest = 127;
const NK::CString kNoDevice;

bool IsNoteOn(const LibMidi::MIDIEvent& event) {
    return event.GetCommand() == NK::MIDI::TMIDIMessage::kNoteOn && event.data2 != 0;
}
bool IsKeyPressure(const LibMidi::MIDIEvent& event) {
    return event.GetCommand() == NK::MIDI::TMIDIMessage::kKeyPressure;
}
bool IsNamed(const NK::CString& kept, const NK::CString& device) {
    return kept == device || kept == MidiBindings::KeepName(device);
}
}  // namespace

bool BoundControls::Take(const LibMidi::MIDIEvent& event, const LibMidi::MIDIInPort* port) {
    const std::optional<MidiControl> control = MidiControl::Of(event);
    if (!control) {
        return false;
    }
    const NK::CString& device = port != nullptr ? port->GetSourceName(event.source) : kNoDevice;
    bool isTaken = false;
    switch (control->kind) {
        case MidiControl::Kind::kNote:
            isTaken = TakeNote(event, *control, device);
            break;
        case MidiControl::Kind::kController:
            isTaken = TakeController(event, *control, device);
            break;
        case MidiControl::Kind::kProgram:
            isTaken = TakeWhatIsPressed(*control, device);
            break;
    }
    UpdateActive();
    return isTaken;
}

bool BoundControls::TakeNote(const LibMidi::MIDIEvent& event, const MidiControl& control, const NK::CString& device) {
    const Down down{event.source, control};
    const std::size_t place = PlaceOf(control);
    if (IsNoteOn(event)) {
        const bool isTaken = TakeWhatIsPressed(control, device);
        SetDown(down, isTaken);
        passed_[place] = passed_[place] || !isTaken;
        return isTaken;
    }
    if (IsKeyPressure(event)) {
        return IsDown(down);
    }
    const bool wasTaken = IsDown(down);
    SetDown(down, false);
    // Of a note that two devices hold a port of several hands on the last end alone, whoever's it is.
    const bool endsAnother = event.source != 0 && passed_[place];
    passed_[place] = false;
    return wasTaken && !endsAnother;
}

bool BoundControls::TakeWhatIsPressed(const MidiControl& control, const NK::CString& device) {
    if (Learn(control, device)) {
        return true;
    }
    Live* const live = Find(control, device);
    if (live != nullptr) {
        Press(*live);
    }
    return live != nullptr;
}

bool BoundControls::TakeController(const LibMidi::MIDIEvent& event, const MidiControl& control,
                                   const NK::CString& device) {
    const Down down{event.source, control};
    const int value = event.data2;
    const bool isLearned = (value != 0 || (learned_ && learned_->canBeBound)) && Learn(control, device);
    Live* const known = Find(control, device);
    if (isLearned && known != nullptr) {
        known->takeover.LetGo();  // it was moved, and nothing followed
        known->position.reset();
    }
    Live* const live = isLearned ? nullptr : known;
    if (isLearned || live != nullptr) {
        SetDown(down, value != 0);
    }
    if (live != nullptr) {
        MoveTo(*live, value);
    }
    if (isLearned || live != nullptr) {
        return true;
    }
    const bool wasTaken = IsDown(down);
    SetDown(down, false);
    return wasTaken && value == 0;
}

bool BoundControls::Learn(const MidiControl& control, const NK::CString& device) {
    if (!learning_ || device.IsEmpty()) {
        return false;
    }
    if (learned_ && learned_->canBeBound) {
        return learned_->control == control && IsNamed(learned_->device, device);
    }
    const bool fits = !IsValue(*learning_) || control.kind == MidiControl::Kind::kController;
    learned_ = Learned{MidiBindings::KeepName(device), control, fits && !control.IsReserved()};
    isTold_ = false;
    Wake();
    return learned_->canBeBound;
}

BoundControls::Live* BoundControls::Find(const MidiControl& control, const NK::CString& device) {
    const auto found = std::find_if(live_.begin(), live_.end(), [&](const Live& live) {
        return live.binding.control == control && IsNamed(live.binding.device, device);
    });
    return found == live_.end() ? nullptr : &*found;
}

void BoundControls::MoveTo(Live& live, int position) {
    if (IsValue(live.binding.function)) {
        live.position = position;
        Wake();
        return;
    }
    const int last = std::exchange(live.last, position);
    // A button that comes to its end twice is pressed anew: there are those that send no release, and it may be lost.
    const bool begins = position >= kPressed && (last < kPressed || (position == kHighest && last == kHighest));
    const bool ends = position < kPressed && (last >= kPressed || position == 0);
    if (begins || (live.binding.latches && ends)) {
        Press(live);
    }
}

void BoundControls::Press(Live& live) {
    live.presses += live.presses < kMostPresses ? 1 : -1;
    Wake();
}

void BoundControls::Wake() {
    if (!std::exchange(isWoken_, true) && wake_) {
        wake_();
    }
}

std::optional<BoundControls::Deed> BoundControls::TakeNext() {
    isWoken_ = false;
    const auto waits = [](const Live& live) { return live.position || live.presses > 0; };
    auto next = std::find_if(live_.begin(), live_.end(), [&waits](const Live& live) {
        return live.binding.function == EPanelFunction::kPanic && waits(live);
    });
    if (next == live_.end()) {
        next = std::find_if(live_.begin(), live_.end(), waits);
    }
    if (next == live_.end()) {
        return std::nullopt;
    }
    const std::optional<int> position = std::exchange(next->position, std::nullopt);
    if (!position) {
        --next->presses;
    }
    return Deed{next->binding.function, position, static_cast<std::size_t>(next - live_.begin())};
}

std::optional<int> BoundControls::Follow(const Deed& knob, int current, int least, int greatest) {
    return live_.at(knob.binding).takeover.Move(knob.position.value_or(0), current, least, greatest);
}

void BoundControls::LetGo(const Deed& knob) {
    live_.at(knob.binding).takeover.LetGo();
}

void BoundControls::SetBindings(const MidiBindings& bindings, const HeldKeys& held) {
    std::vector<Live> former = std::exchange(live_, {});
    for (const MidiBinding& binding : bindings.GetAll()) {
        const auto same = std::find_if(former.begin(), former.end(),
                                       [&binding](const Live& live) { return live.binding == binding; });
        live_.push_back(same != former.end() ? *same : Live{binding});
    }
    Activate(held);
}

void BoundControls::BeginLearning(EPanelFunction function, const HeldKeys& held) {
    learning_ = function;
    learned_.reset();
    isTold_ = true;
    Activate(held);
}

std::optional<BoundControls::Learned> BoundControls::TakeLearned() {
    isWoken_ = false;
    return std::exchange(isTold_, true) ? std::nullopt : learned_;
}

void BoundControls::EndLearning() {
    learning_.reset();
    learned_.reset();
    isTold_ = true;
    UpdateActive();
}

bool BoundControls::IsDown(const Down& down) const {
    return std::find(down_.begin(), down_.end(), down) != down_.end();
}

void BoundControls::SetDown(const Down& down, bool isDown) {
    std::erase(down_, down);
    if (isDown) {
        down_.push_back(down);
    }
}

void BoundControls::Activate(const HeldKeys& held) {
    if (!isActive_) {
        passed_.reset();
        for (MidiControl note{MidiControl::Kind::kNote, 0, 0}; note.channel < 16; ++note.channel) {
            for (note.number = 0; note.number < 128; ++note.number) {
                passed_[PlaceOf(note)] = held.IsHeld(note.number);  // on which channel is not known
            }
        }
    }
    UpdateActive();
}

void BoundControls::UpdateActive() {
    isActive_ = !live_.empty() || learning_ || !down_.empty();
}

}  // namespace Kivora
