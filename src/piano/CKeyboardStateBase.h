// Which of the 128 MIDI notes are down. [owner]
#pragma once

#include <cstdint>

#include "midi/TMIDIMessage.h"

namespace NK::Piano {

/// The pressed notes, and whether any changed since somebody looked. Allocates nothing. Not for use from several
/// threads at once.
class CKeyboardStateBase {
public:
    static constexpr int kNotes = 128;
    enum State : std::uint32_t {
        kUp = 0,
        kProvisional = 1,  ///< down when the poll cycle began, not confirmed yet
        kDown = 2
    };

    /// All notes up and the changed flag set, so that a first display is drawn.
    CKeyboardStateBase() = default;
    CKeyboardStateBase(const CKeyboardStateBase&) = default;
    CKeyboardStateBase& operator=(const CKeyboardStateBase&) = default;
    virtual ~CKeyboardStateBase() = default;

    /// Every note up. Sets the changed flag and returns true if any was not; else the flag stays and false returns.
    virtual bool ReleaseAll();
    virtual bool IsChanged() const { return changed_; }
    virtual void ResetChanged() { changed_ = false; }
    /// Down or provisional. The note must be 0..127; it is not checked.
    virtual bool IsPressed(std::uint8_t note) const { return states_[note] != kUp; }
    /// Sets the changed flag unless the note is down already; a provisional note counts as a change. A note above 127
    /// throws CInvalidParameterException "Invalid note number." and changes nothing.
    virtual void PressKey(std::uint8_t note);
    /// Sets the changed flag if the note was not up. Throws as PressKey() does.
    virtual void ReleaseKey(std::uint8_t note);
    /// Note-on presses, note-off and a note-on of velocity 0 release, system reset (0xFF) releases all; the rest is
    /// ignored. Acts through the virtual operations.
    virtual void ProcessMessage(const MIDI::TMIDIMessage& message);

    /// Copies the states and the changed flag.
    void Assign(const CKeyboardStateBase& other) { *this = other; }
    /// Whether the 128 states are the same; the flags do not count.
    bool IsEqual(const CKeyboardStateBase& other) const;
    /// Without `compare`: copies the states and the changed flag, and returns that flag. With it: equal states clear
    /// the changed flag and return true; else the states are copied, the flag is set and false returns.
    bool AssignCompare(const CKeyboardStateBase& other, bool compare);

protected:
    std::uint32_t states_[kNotes] = {};  ///< State by note number
    bool changed_ = true;
};

}  // namespace NK::Piano
