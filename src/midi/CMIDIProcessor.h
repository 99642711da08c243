// Base of the effects that work on batches of messages in time. [owner]
#pragma once

#include "midi/CMIDIOutputBase.h"
#include "midi/MusicalClock.h"
#include "midi/TMIDIMessage.h"

namespace NK {
class CIniFile;
}

namespace NK::MIDI {

/// An effect with a bypass. Used from one thread at a time.
class CMIDIProcessor {
public:
    virtual ~CMIDIProcessor() = default;
    virtual bool IsBypassed() const { return bypassed_; }
    /// Nothing when the flag has that value already. Else stores it and, unless the hook says that no reset is needed
    /// and none is forced, calls Reset().
    virtual void SetBypassed(bool bypass, bool forceReset = false);
    /// True: handled, no reset needed.
    virtual bool OnBypassChanged() { return true; }
    virtual void SetDefaults() = 0;
    /// Forgets all running state.
    virtual void Reset() = 0;
    /// A null position means that there is no clock. Its offset counts its own units, milliseconds in the engine.
    virtual void SyncToTime(const MusicalClock* position) { static_cast<void>(position); }
    /// Both work on the section that the file's cursor stands on. True on success.
    virtual bool SaveSettings(CIniFile& section) = 0;
    virtual bool LoadSettings(CIniFile& section) = 0;
    /// Works on `count` (0 or more) messages in place; a message taken over gets status 0. Generated notes go to
    /// `output`.
    virtual void Process(TMIDIMessage* messages, int count, const MusicalClock& position, CMIDIOutputBase& output) = 0;

private:
    bool bypassed_ = false;
};

}  // namespace NK::MIDI
