#include "ui/MIDIEventRelay.h"
#include "midi/MIDIControllers.h"
#include "nk/nk_thread_role.h"

#include <QMetaObject>

using NK::MIDI::TMIDIMessage;

namespace {
constexpr std::size_t kResetControllers = NK::MIDI::Controller::kResetControllers;

int Packed(TMIDIMessage message) {
    return static_cast<int>(message.ToWord());
}

bool IsStrike(TMIDIMessage message) {
    return message.status == TMIDIMessage::kNoteOn && message.data2 > 0;
}
}  // namespace

void MIDIEventRelay::Put(int packedMessage) {
    const TMIDIMessage message = TMIDIMessage::FromWord(static_cast<std::uint32_t>(packedMessage));
    const CLockGuard guard(lock_);
    const std::size_t number = TMIDIMessage::DataOf(message.data1);
    switch (message.status) {
        case TMIDIMessage::kNoteOff:
        case TMIDIMessage::kNoteOn:
            pending_.changed.set(number);
            pending_.last[number] = message;
            if (IsStrike(message)) {
                pending_.struck.set(number);
                pending_.strike[number] = message;
                pending_.lastStruck = number;
            }
            break;
        case TMIDIMessage::kControlChange:
            if (number == kResetControllers) {
                pending_.controllerChanged.reset();
                pending_.wheel = {};
            }
            pending_.controllerChanged.set(number);
            pending_.controller[number] = message;
            break;
        case TMIDIMessage::kSystemReset:
            pending_.reset = true;
            pending_.changed.reset();
            pending_.struck.reset();
            pending_.wheel = {};
            break;
        case TMIDIMessage::kPitchWheel:
            pending_.wheel = message;
            break;
        default:
            pending_.other = message;
            break;
    }
    if (!posted_) {
        posted_ = true;
        QMetaObject::invokeMethod(this, "deliver", Qt::QueuedConnection);
    }
}

void MIDIEventRelay::DeliverNote(const Pending& taken, std::size_t note) {
    if (!taken.changed[note]) {
        return;
    }
    if (taken.struck[note] && !IsStrike(taken.last[note])) {
        emit MIDIMessageReady(Packed(taken.strike[note]));
    }
    emit MIDIMessageReady(Packed(taken.last[note]));
}

void MIDIEventRelay::deliver() {
    NK_ASSERT_THREAD_ROLE(gui);
    Pending taken;
    {
        const CLockGuard guard(lock_);
        taken = pending_;
        pending_ = Pending{};
        posted_ = false;
    }
    if (taken.reset) {
        emit MIDIMessageReady(Packed(TMIDIMessage{TMIDIMessage::kSystemReset, 0, 0, 0}));
    }
    for (std::size_t note = 0; note < taken.changed.size(); ++note) {
        if (note != taken.lastStruck) {
            DeliverNote(taken, note);
        }
    }
    DeliverNote(taken, taken.lastStruck);
    if (taken.controllerChanged[kResetControllers]) {
        emit MIDIMessageReady(Packed(taken.controller[kResetControllers]));
    }
    for (std::size_t number = 0; number < taken.controllerChanged.size(); ++number) {
        if (taken.controllerChanged[number] && number != kResetControllers) {
            emit MIDIMessageReady(Packed(taken.controller[number]));
        }
    }
    for (const TMIDIMessage& message : {taken.wheel, taken.other}) {
        if (message.status != 0) {
            emit MIDIMessageReady(Packed(message));
        }
    }
    emit BatchDone();
}
