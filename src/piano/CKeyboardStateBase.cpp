#include "piano/CKeyboardStateBase.h"

#include <algorithm>

namespace NK::Piano {

namespace {

void CheckNote(std::uint8_t note) {
    if (note >= CKeyboardStateBase::kNotes) {
        throw CInvalidParameterException(L"Invalid note number.");
    }
}

}  // namespace

bool CKeyboardStateBase::ReleaseAll() {
    if (std::all_of(states_, states_ + kNotes, [](std::uint32_t state) { return state == kUp; })) {
        return false;
    }
    std::fill_n(states_, kNotes, kUp);
    changed_ = true;
    return true;
}

void CKeyboardStateBase::PressKey(std::uint8_t note) {
    CheckNote(note);
    if (states_[note] != kDown) {
        states_[note] = kDown;
        changed_ = true;
    }
}

void CKeyboardStateBase::ReleaseKey(std::uint8_t note) {
    CheckNote(note);
    if (states_[note] != kUp) {
        states_[note] = kUp;
        changed_ = true;
    }
}

void CKeyboardStateBase::ProcessMessage(const MIDI::TMIDIMessage& message) {
    switch (message.status) {
        case MIDI::TMIDIMessage::kNoteOn:
            if (message.data2 > 0) {
                PressKey(message.data1);
            } else {
                ReleaseKey(message.data1);
            }
            break;
        case MIDI::TMIDIMessage::kNoteOff:
            ReleaseKey(message.data1);
            break;
        case MIDI::TMIDIMessage::kSystemReset:
            ReleaseAll();
            break;
        default:
            break;
    }
}

bool CKeyboardStateBase::IsEqual(const CKeyboardStateBase& other) const {
    return std::equal(states_, states_ + kNotes, other.states_);
}

bool CKeyboardStateBase::AssignCompare(const CKeyboardStateBase& other, bool compare) {
    if (!compare) {
        Assign(other);
        return changed_;
    }
    if (IsEqual(other)) {
        changed_ = false;
        return true;
    }
    std::copy_n(other.states_, kNotes, states_);
    changed_ = true;
    return false;
}

}  // namespace NK::Piano
