// The pressed notes of a source that can only tell which keys are down at the moment. [owner]
#pragma once

#include "piano/CKeyboardStateBase.h"

namespace NK::Piano {

/// A keyboard state with a poll cycle: BeginPoll(), PressKey() for every note that is down, EndPoll(). A cycle with any
/// key held ends with the changed flag set.
class CKeyboardStatePoll : public CKeyboardStateBase {
public:
    /// True if a note was released or the changed flag was set before; the flag then is set.
    bool ReleaseAll() override;
    /// Every pressed note becomes provisional; clears the changed flag.
    virtual void BeginPoll();
    /// Releases the notes that are still provisional and sets the changed flag if there were any. Nothing happens
    /// unless BeginPoll() found pressed notes.
    virtual void EndPoll();

    /// Copies the states and both flags.
    void Assign(const CKeyboardStatePoll& other) { *this = other; }

private:
    bool provisional_ = false;
};

}  // namespace NK::Piano
