#include "libmidi/alsa/AlsaEvents.h"

#include <algorithm>
#include <optional>

#include "libmidi/InputEvents.h"
#include "midi/MIDIControllers.h"

namespace LibMidi {

using NK::MIDI::TMIDIMessage;
namespace Controller = NK::MIDI::Controller;

namespace {

constexpr int kWheelCentre = TMIDIMessage::kPitchWheelCentre;

std::uint8_t LowBits(int value) {
    return TMIDIMessage::DataOf(value);
}
std::uint8_t HighBits(int value) {
    return TMIDIMessage::DataOf(value >> 7);
}

/// Visits the messages of one channel.
class ChannelVisit {
public:
    ChannelVisit(int channel, const std::function<void(const MIDIEvent&)>& visit) : channel_(channel), visit_(visit) {}

    void operator()(int command, int data1, int data2 = 0) const {
        const std::uint8_t status = TMIDIMessage::StatusByte(command, channel_);
        if (const std::optional<MIDIEvent> event = ToInputEvent(status, LowBits(data1), LowBits(data2))) {
            visit_(*event);
        }
    }
    void Control(int controller, int value) const { (*this)(TMIDIMessage::kControlChange, controller, value); }
    void Parameter(int coarse, int fine, const snd_seq_ev_ctrl_t& control) const {
        Control(coarse, HighBits(static_cast<int>(control.param)));
        Control(fine, LowBits(static_cast<int>(control.param)));
        Control(Controller::kDataEntry, HighBits(control.value));
        Control(Controller::kDataEntryLow, LowBits(control.value));
    }

private:
    int channel_;
    const std::function<void(const MIDIEvent&)>& visit_;
};

}  // namespace

void VisitInputEvents(const snd_seq_event_t& event, const std::function<void(const MIDIEvent&)>& visit) {
    const snd_seq_ev_note_t& note = event.data.note;
    const snd_seq_ev_ctrl_t& control = event.data.control;
    const ChannelVisit onNotes(note.channel, visit);
    const ChannelVisit onControl(control.channel, visit);
    const int parameter = static_cast<int>(control.param);
    switch (event.type) {
        case SND_SEQ_EVENT_NOTEON:
            return onNotes(TMIDIMessage::kNoteOn, note.note, note.velocity);
        case SND_SEQ_EVENT_NOTEOFF:
            return onNotes(TMIDIMessage::kNoteOff, note.note, note.velocity);
        case SND_SEQ_EVENT_KEYPRESS:
            return onNotes(TMIDIMessage::kKeyPressure, note.note, note.velocity);
        case SND_SEQ_EVENT_CONTROLLER:
            return onControl.Control(parameter, control.value);
        case SND_SEQ_EVENT_PGMCHANGE:
            return onControl(TMIDIMessage::kProgramChange, control.value);
        case SND_SEQ_EVENT_CHANPRESS:
            return onControl(TMIDIMessage::kChannelPressure, control.value);
        case SND_SEQ_EVENT_PITCHBEND: {
            const int value = std::clamp(control.value + kWheelCentre, 0, TMIDIMessage::kPitchWheelMaximum);
            return onControl(TMIDIMessage::kPitchWheel, LowBits(value), HighBits(value));
        }
        case SND_SEQ_EVENT_CONTROL14:
            if (parameter >= Controller::kLow) {
                return onControl.Control(parameter, control.value);
            }
            onControl.Control(parameter, HighBits(control.value));
            return onControl.Control(parameter + Controller::kLow, LowBits(control.value));
        case SND_SEQ_EVENT_NONREGPARAM:
            return onControl.Parameter(Controller::kUnregistered, Controller::kUnregisteredLow, control);
        case SND_SEQ_EVENT_REGPARAM:
            return onControl.Parameter(Controller::kRegistered, Controller::kRegisteredLow, control);
        default:
            return;
    }
}

namespace {

/// The type of a system message without data; none for one that has some.
std::optional<snd_seq_event_type> FindPlainSystemType(std::uint8_t status) {
    switch (status) {
        case TMIDIMessage::kTuneRequest:
            return SND_SEQ_EVENT_TUNE_REQUEST;
        case TMIDIMessage::kTimingClock:
            return SND_SEQ_EVENT_CLOCK;
        case TMIDIMessage::kStart:
            return SND_SEQ_EVENT_START;
        case TMIDIMessage::kContinue:
            return SND_SEQ_EVENT_CONTINUE;
        case TMIDIMessage::kStop:
            return SND_SEQ_EVENT_STOP;
        case TMIDIMessage::kActiveSensing:
            return SND_SEQ_EVENT_SENSING;
        case TMIDIMessage::kSystemReset:
            return SND_SEQ_EVENT_RESET;
        default:
            return std::nullopt;
    }
}

bool FillSystemEvent(const MIDIEvent& message, snd_seq_event_t& event) {
    snd_seq_ev_ctrl_t& control = event.data.control;
    switch (message.status) {
        case TMIDIMessage::kTimeCode:
            event.type = SND_SEQ_EVENT_QFRAME;
            control.value = message.data1;
            return true;
        case TMIDIMessage::kSongPosition:
            event.type = SND_SEQ_EVENT_SONGPOS;
            control.value = message.data1 | message.data2 << 7;
            return true;
        case TMIDIMessage::kSongSelect:
            event.type = SND_SEQ_EVENT_SONGSEL;
            control.value = message.data1;
            return true;
        default:
            break;
    }
    const std::optional<snd_seq_event_type> type = FindPlainSystemType(message.status);
    if (type) {
        event.type = static_cast<snd_seq_event_type_t>(*type);
    }
    return type.has_value();
}

}  // namespace

bool FillEvent(const MIDIEvent& message, snd_seq_event_t& event) {
    const unsigned char channel = message.GetChannel();
    const auto fillNote = [&](snd_seq_event_type type) {
        event.type = static_cast<snd_seq_event_type_t>(type);
        event.data.note = {channel, message.data1, message.data2, 0, 0};
        return true;
    };
    const auto fillControl = [&](snd_seq_event_type type, unsigned int parameter, int value) {
        event.type = static_cast<snd_seq_event_type_t>(type);
        event.data.control = {channel, {}, parameter, value};
        return true;
    };
    switch (message.GetCommand()) {
        case TMIDIMessage::kNoteOff:
            return fillNote(SND_SEQ_EVENT_NOTEOFF);
        case TMIDIMessage::kNoteOn:
            return fillNote(SND_SEQ_EVENT_NOTEON);
        case TMIDIMessage::kKeyPressure:
            return fillNote(SND_SEQ_EVENT_KEYPRESS);
        case TMIDIMessage::kControlChange:
            return fillControl(SND_SEQ_EVENT_CONTROLLER, message.data1, message.data2);
        case TMIDIMessage::kProgramChange:
            return fillControl(SND_SEQ_EVENT_PGMCHANGE, 0, message.data1);
        case TMIDIMessage::kChannelPressure:
            return fillControl(SND_SEQ_EVENT_CHANPRESS, 0, message.data1);
        case TMIDIMessage::kPitchWheel:
            return fillControl(SND_SEQ_EVENT_PITCHBEND, 0, (message.data1 | message.data2 << 7) - kWheelCentre);
        case TMIDIMessage::kSystemExclusive:
            return FillSystemEvent(message, event);
        default:
            return false;
    }
}

}  // namespace LibMidi
