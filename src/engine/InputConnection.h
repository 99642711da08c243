// The port that is played from.
#pragma once

#include <atomic>

#include "engine/PortList.h"
#include "libmidi/MIDIPort.h"
#include "nk/nk_string.h"

namespace Kivora {

/// The input port that is open, if one is, and the name of the wanted one, which stays when none is. Whoever owns one
/// says what guards it. [gui]
class InputConnection {
public:
    /// `port`, the open one or null, is written by this class only; its owner may look at it without the guard.
    explicit InputConnection(std::atomic<LibMidi::MIDIInPort*>& port) : port_(port) {}

    LibMidi::MIDIInPort* GetPort() const { return port_.load(); }
    const NK::CString& GetName() const { return name_; }  ///< of the open or the wanted one; empty for none
    void SetName(const NK::CString& name) { name_ = name; }
    int GetIndex() const { return index_; }  ///< of the open one in the list of names; -1 without one
    /// Whether its device has gone, or has gone and is not listed any more.
    bool IsLost() const { return isLost_; }
    void SetLost(bool isLost) { isLost_ = isLost; }

    /// Opens a port in place of none. False when it does not open: then nothing has changed.
    bool Open(LibMidi::MIDIInPort& port, LibMidi::MIDIPortDataListener& listener, const PortList& list);
    /// Nothing where none is open but that none is lost.
    void Close(LibMidi::MIDIPortDataListener& listener);
    /// Closes and opens the same port; it is lost when it does not open.
    bool Reopen();
    /// The list has changed: the index follows it, and where no port is open the name becomes the listed one of the
    /// port that it means.
    void Follow(const PortList& list);

private:
    std::atomic<LibMidi::MIDIInPort*>& port_;
    NK::CString name_;
    int index_ = -1;
    bool isLost_ = false;
};

}  // namespace Kivora
