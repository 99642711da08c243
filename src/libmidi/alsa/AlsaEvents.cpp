#include "libmidi/alsa/AlsaEvents.h"

#include <algorithm>
#include <optional>

#include "libmidi/InputEvents.h"

namespace LibMidi {

namespace {

// MIDI 1.0, table III.
constexpr std::uint8_t kFirstFineController = 32;
constexpr std::uint8_t kDataEntryCoarse = 6;
constexpr std::uint8_t kDataEntryFine = 38;
constexpr std::uint8_t kUnregisteredFine = 98;
constexpr std::uint8_t kUnregisteredCoarse = 99;
constexpr std::uint8_t kRegisteredFine = 100;
constexpr std::uint8_t kRegisteredCoarse = 101;

constexpr int kWheelCentre = 0x2000;

std::uint8_t LowBits(int value) {
    return static_cast<std::uint8_t>(value & 0x7F);
}
std::uint8_t HighBits(int value) {
    return static_cast<std::uint8_t>((value >> 7) & 0x7F);
}

/// Visits the messages of one channel.
class ChannelVisit {
public:
    ChannelVisit(int channel, const std::function<void(const MIDIEvent&)>& visit) : channel_(channel), visit_(visit) {}

    void operator()(int command, int data1, int data2 = 0) const {
        const auto status = static_cast<std::uint8_t>(command | (channel_ & 0x0F));
        if (const std::optional<MIDIEvent> event = ToInputEvent(status, LowBits(data1), LowBits(data2))) {
            visit_(*event);
        }
    }
    void Control(int controller, int value) const { (*this)(0xB0, controller, value); }
    void Parameter(int coarse, int fine, const snd_seq_ev_ctrl_t& control) const {
        Control(coarse, HighBits(static_cast<int>(control.param)));
        Control(fine, LowBits(static_cast<int>(control.param)));
        Control(kDataEntryCoarse, HighBits(control.value));
        Control(kDataEntryFine, LowBits(control.value));
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
            return onNotes(0x90, note.note, note.velocity);
        case SND_SEQ_EVENT_NOTEOFF:
            return onNotes(0x80, note.note, note.velocity);
        case SND_SEQ_EVENT_KEYPRESS:
            return onNotes(0xA0, note.note, note.velocity);
        case SND_SEQ_EVENT_CONTROLLER:
            return onControl.Control(parameter, control.value);
        case SND_SEQ_EVENT_PGMCHANGE:
            return onControl(0xC0, control.value);
        case SND_SEQ_EVENT_CHANPRESS:
            return onControl(0xD0, control.value);
        case SND_SEQ_EVENT_PITCHBEND: {
            const int value = std::clamp(control.value + kWheelCentre, 0, 2 * kWheelCentre - 1);
            return onControl(0xE0, LowBits(value), HighBits(value));
        }
        case SND_SEQ_EVENT_CONTROL14:
            if (parameter >= kFirstFineController) {
                return onControl.Control(parameter, control.value);
            }
            onControl.Control(parameter, HighBits(control.value));
            return onControl.Control(parameter + kFirstFineController, LowBits(control.value));
        case SND_SEQ_EVENT_NONREGPARAM:
            return onControl.Parameter(kUnregisteredCoarse, kUnregisteredFine, control);
        case SND_SEQ_EVENT_REGPARAM:
            return onControl.Parameter(kRegisteredCoarse, kRegisteredFine, control);
        default:
            return;
    }
}

namespace {

/// The type of a system message without data; none for one that has some.
std::optional<snd_seq_event_type> FindPlainSystemType(std::uint8_t status) {
    switch (status) {
        case 0xF6:
            return SND_SEQ_EVENT_TUNE_REQUEST;
        case 0xF8:
            return SND_SEQ_EVENT_CLOCK;
        case 0xFA:
            return SND_SEQ_EVENT_START;
        case 0xFB:
            return SND_SEQ_EVENT_CONTINUE;
        case 0xFC:
            return SND_SEQ_EVENT_STOP;
        case 0xFE:
            return SND_SEQ_EVENT_SENSING;
        case 0xFF:
            return SND_SEQ_EVENT_RESET;
        default:
            return std::nullopt;
    }
}

bool FillSystemEvent(const MIDIEvent& message, snd_seq_event_t& event) {
    snd_seq_ev_ctrl_t& control = event.data.control;
    switch (message.status) {
        case 0xF1:
            event.type = SND_SEQ_EVENT_QFRAME;
            control.value = message.data1;
            return true;
        case 0xF2:
            event.type = SND_SEQ_EVENT_SONGPOS;
            control.value = message.data1 | message.data2 << 7;
            return true;
        case 0xF3:
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
    const auto channel = static_cast<unsigned char>(message.status & 0x0F);
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
    switch (message.status & 0xF0) {
        case 0x80:
            return fillNote(SND_SEQ_EVENT_NOTEOFF);
        case 0x90:
            return fillNote(SND_SEQ_EVENT_NOTEON);
        case 0xA0:
            return fillNote(SND_SEQ_EVENT_KEYPRESS);
        case 0xB0:
            return fillControl(SND_SEQ_EVENT_CONTROLLER, message.data1, message.data2);
        case 0xC0:
            return fillControl(SND_SEQ_EVENT_PGMCHANGE, 0, message.data1);
        case 0xD0:
            return fillControl(SND_SEQ_EVENT_CHANPRESS, 0, message.data1);
        case 0xE0:
            return fillControl(SND_SEQ_EVENT_PITCHBEND, 0, (message.data1 | message.data2 << 7) - kWheelCentre);
        case 0xF0:
            return FillSystemEvent(message, event);
        default:
            return false;
    }
}

}  // namespace LibMidi
