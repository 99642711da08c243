#include "piano/CKeyboardStatePoll.h"

namespace NK::Piano {

bool CKeyboardStatePoll::ReleaseAll() {
    const bool wasChanged = changed_;
    changed_ = false;
    if (!CKeyboardStateBase::ReleaseAll()) {
        changed_ = wasChanged;
        return wasChanged;
    }
    provisional_ = false;
    return true;
}

void CKeyboardStatePoll::BeginPoll() {
    provisional_ = false;
    changed_ = false;
    for (std::uint32_t& state : states_) {
        if (state != kUp) {
            state = kProvisional;
            provisional_ = true;
        }
    }
}

void CKeyboardStatePoll::EndPoll() {
    if (!provisional_) {
        return;
    }
    for (std::uint32_t& state : states_) {
        if (state == kProvisional) {
            state = kUp;
            changed_ = true;
        }
    }
}

}  // namespace NK::Piano
