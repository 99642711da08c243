// The port that is played to.
#pragma once

#include <optional>

#include "engine/OutputFollower.h"
#include "engine/PortList.h"
#include "libmidi/MIDIPlayer.h"
#include "libmidi/MIDIPort.h"
#include "libmidi/OpenSounds.h"
#include "nk/nk_string.h"

namespace Kivora {

/// The output port that is open, if one is, with its place at the player; the name of the wanted one, which stays when
/// none is; and what may sound on a device that was lost. Whoever owns one says what guards it. [gui], but what tells
/// something and those that follow a loss are for the tick too.
class OutputConnection {
public:
    LibMidi::MIDIOutPort* GetPort() const { return port_; }  ///< null while none is open
    const NK::CString& GetName() const { return name_; }     ///< of the open or the wanted one; empty for none
    void SetName(const NK::CString& name) { name_ = name; }
    int GetIndex() const { return index_; }  ///< of the open one in the list of names; -1 without one
    /// Whether the device of the open one has failed or gone.
    bool IsLost() const { return isLost_; }

    /// Opens a port in place of none and attaches it. False when it does not open: then nothing has changed.
    bool Open(LibMidi::MIDIOutPort& port, LibMidi::MIDIPlayer& player, const PortList& list);
    void Detach(LibMidi::MIDIPlayer& player);
    /// Closes the port, if one is open, which is detached or whose player is gone. None is lost then.
    void Close();
    /// The same port again after its device was lost: leaves the player, which does not run, and closes; attaches anew,
    /// opens, starts the player. False when it cannot be opened or the player not be started.
    void Leave(LibMidi::MIDIPlayer& player);
    bool Return(LibMidi::MIDIPlayer& player);
    /// As InputConnection::Follow().
    void Follow(const PortList& list);

    /// The device has failed or gone.
    void Lose() { isLost_ = true; }
    /// What sounds on it is ended where it still takes something, that is if it is not gone. It is stranded if that did
    /// not succeed, or if `isKept`.
    void Strand(bool isGone, bool isKept);
    bool HasStranded() const { return stranded_.IsAny(); }
    /// The listed port of the device on which something is stranded; null where nothing is or none has its name.
    LibMidi::MIDIOutPort* FindStranded(const PortList& list) const;
    void VisitStrandedEnds(const LibMidi::OpenSounds::Visit& visit) const { stranded_.VisitEnds(visit); }
    /// Opens `port` for a moment to write them. False when it did not take all of them.
    bool EndStrandedOn(LibMidi::MIDIOutPort& port) const;
    void ForgetStranded() { stranded_ = {}; }

private:
    void Attach(LibMidi::MIDIOutPort& port, LibMidi::MIDIPlayer& player);

    LibMidi::MIDIOutPort* port_ = nullptr;
    NK::CString name_;
    int index_ = -1;
    int binding_ = -1;                        ///< at the player
    std::optional<OutputFollower> follower_;  ///< of the open port, for the player
    bool isLost_ = false;
    LibMidi::OpenSounds stranded_;
    NK::CString strandedName_;
};

}  // namespace Kivora
