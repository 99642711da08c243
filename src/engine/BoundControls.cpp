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
/// What a controller may send in vain while one is learned, as some faders do.
bool IsBendOrPressure(const LibMidi::MIDIEvent& event) {
    return event.GetCommand() == NK::MIDI::TMIDIMessage::kPitchWheel ||
           event.GetCommand() == NK::MIDI::TMIDIMessage::kChannelPressure;
}
}  // namespace

bool BoundControls::Take(const LibMidi::MIDIEvent& event, const LibMidi::MIDIInPort* port, bool isHeard) {
    const Sender sender{port, event.source};
    const std::optional<MidiControl> control = MidiControl::Of(event);
    if (!control) {
        if (learning_ && !(learned_ && learned_->canBeBound) && IsBendOrPressure(event)) {
            Tell({NameOf(sender), std::nullopt, false});
        }
        return false;
    }
    bool isTaken = false;
    switch (control->kind) {
        case MidiControl::Kind::kNote:
            isTaken = TakeNote(event, *control, sender, isHeard);
            break;
        case MidiControl::Kind::kController:
            isTaken = TakeController(event, *control, sender);
            break;
        case MidiControl::Kind::kProgram:
            isTaken = TakeWhatIsPressed(*control, sender);
            break;
    }
    UpdateActive();
    return isTaken;
}

const NK::CString& BoundControls::NameOf(const Sender& sender) {
    const NK::CString& given = sender.port != nullptr ? sender.port->GetSourceName(sender.source) : kNoDevice;
    const auto known =
        std::find_if(names_.begin(), names_.end(), [&given](const Name& name) { return name.given == given; });
    return known != names_.end() ? known->kept : names_.emplace_back(Name{given, MidiBindings::KeepName(given)}).kept;
}

bool BoundControls::TakeNote(const LibMidi::MIDIEvent& event, const MidiControl& control, const Sender& sender,
                             bool isHeard) {
    const Down down{event.source, control};
    if (IsNoteOn(event)) {
        const bool isTaken = TakeWhatIsPressed(control, sender);
        SetDown(down, isTaken);
        return isTaken;
    }
    if (IsKeyPressure(event)) {
        return IsDown(down);
    }
    const bool wasTaken = IsDown(down);
    SetDown(down, false);
    return wasTaken && !isHeard;
}

bool BoundControls::TakeWhatIsPressed(const MidiControl& control, const Sender& sender) {
    if (Learn(control, sender)) {
        return true;
    }
    Live* const live = Find(control, sender);
    if (live != nullptr) {
        Press(*live);
    }
    return live != nullptr;
}

bool BoundControls::TakeController(const LibMidi::MIDIEvent& event, const MidiControl& control, const Sender& sender) {
    const Down down{event.source, control};
    const int value = event.data2;
    const bool isLearned = (value != 0 || (learned_ && learned_->canBeBound)) && Learn(control, sender);
    Live* const known = Find(control, sender);
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

bool BoundControls::Learn(const MidiControl& control, const Sender& sender) {
    if (!learning_) {
        return false;
    }
    if (learned_ && learned_->canBeBound) {
        return learned_->control == control && learned_->device == NameOf(sender);
    }
    const bool fits = !IsValue(*learning_) || control.kind == MidiControl::Kind::kController;
    Tell({NameOf(sender), control, fits && !control.IsReserved()});
    return learned_ && learned_->canBeBound;
}

void BoundControls::Tell(Learned learned) {
    if (!learned.device.IsEmpty() && learned_ != learned) {
        learned_ = std::move(learned);
        isTold_ = false;
        Wake();
    }
}

BoundControls::Live* BoundControls::Find(const MidiControl& control, const Sender& sender) {
    const auto found = std::find_if(live_.begin(), live_.end(), [&](const Live& live) {
        return live.binding.control == control && live.binding.device == NameOf(sender);
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

void BoundControls::LetGo() {
    for (Live& live : live_) {
        live.takeover.LetGo();
    }
}

void BoundControls::SetBindings(const MidiBindings& bindings) {
    std::vector<Live> former = std::exchange(live_, {});
    for (const MidiBinding& binding : bindings.GetAll()) {
        const auto same = std::find_if(former.begin(), former.end(),
                                       [&binding](const Live& live) { return live.binding == binding; });
        live_.push_back(same != former.end() ? *same : Live{binding});
    }
    names_.clear();
    UpdateActive();
}

void BoundControls::BeginLearning(EPanelFunction function) {
    learning_ = function;
    learned_.reset();
    isTold_ = true;
    UpdateActive();
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

void BoundControls::UpdateActive() {
    isActive_ = !live_.empty() || learning_ || !down_.empty();
}

}  // namespace Kivora
