// The abstract ports.
#pragma once

#include <cstdint>

#include "libmidi/MIDIEvent.h"
#include "libmidi/Result.h"
#include "nk/nk_string.h"

namespace LibMidi {

/// Flags that every port reports.
enum PortFlags : std::uint32_t { kInput = 1, kOutput = 2, kOpen = 4, kUnavailableFlag = 8 };

/// What has become of the device of an open port.
enum class DeviceState {
    kWorks,      ///< as far as anybody can say
    kStalled,    ///< it takes what is written and does nothing with it for now
    kLost,       ///< nothing comes from it and reaches it any more
    kBack,       ///< was lost; closing and opening the port reaches it again
    kElsewhere,  ///< was lost; it is there, but only the ports of a new set reach it
};

/// Receives incoming MIDI on the input port's own thread, with none of the port's locks held. Not owned by the port;
/// removed before it is destroyed.
class MIDIPortDataListener {
public:
    virtual ~MIDIPortDataListener() = default;
    /// `count` is 1 or more. [input]
    virtual void OnMIDIData(const MIDIEvent* events, std::int32_t count) = 0;
    /// Messages were lost between the events given before this call and those given after it: the device's buffer ran
    /// over `lostCount` times (1 or more), each time for an unknown number of messages. Keys that this port holds down
    /// may never be released by it. [input]
    virtual void OnMIDIDataLost(std::uint32_t lostCount) { static_cast<void>(lostCount); }
};

/// Base of all ports. Owned by the port set that made it.
class MIDIPort {
public:
    virtual ~MIDIPort() = default;
    virtual const NK::CString& GetName() const = 0;  ///< [any]
    virtual std::uint32_t GetFlags() const = 0;      ///< [any]
    /// kSuccess, kUnavailable, kAlreadyOpen or kDeviceError. Not for several threads at once. [gui]
    virtual Result Open() = 0;
    /// kSuccess, kUnavailable or kNotOpen. Not for several threads at once; an input port's waits for its thread, so
    /// not from inside a listener's call. [gui]
    virtual Result Close() = 0;
    /// Looks what has become of the device, waiting for nothing; to be called about once a second while the port is to
    /// be open. Of a device that was lost a look may begin to reach it again behind the caller's back. [gui]
    virtual DeviceState LookAtDevice() { return DeviceState::kWorks; }
    /// Whether another way of listing ports gives the port this name, so that settings which name it so find it. [gui]
    virtual bool HadName(const NK::CString& name) const {
        static_cast<void>(name);
        return false;
    }
};

class MIDIInPort : public virtual MIDIPort {
public:
    /// Appends; duplicates are not checked. May be called while the port is open. [any]
    virtual void AddListener(MIDIPortDataListener* listener) = 0;
    /// Removes the first equal entry, if any. On return no call to the listener is in progress, unless this is called
    /// from inside that very call. The caller must not hold a lock that the listener takes without giving up, see
    /// IsClosing(). [any]
    virtual void RemoveListener(MIDIPortDataListener* listener) = 0;
    /// True from the moment that Close() or RemoveListener() waits for a call in progress: a listener that waits for a
    /// lock polls this and gives up, so that closing under that lock cannot deadlock. [input]
    virtual bool IsClosing() const = 0;
    /// How often messages were lost since the port was opened, see MIDIPortDataListener::OnMIDIDataLost(). [any]
    virtual std::uint32_t GetLostCount() const { return 0; }
    /// The name of the device that sent an event with that `source`: the port's own, unless it listens to several. For
    /// the call of a listener in progress. [input]
    virtual const NK::CString& GetSourceName(std::uint8_t source) const {
        static_cast<void>(source);
        return GetName();
    }
};

class MIDIOutPort : public virtual MIDIPort {
public:
    /// kUnavailable, then kNoData for null events, then kNotOpen; a count below 1 is kSuccess. The first failing write
    /// ends the call with kDeviceError; earlier events stay sent. [any]
    virtual Result Write(const MIDIEvent* events, std::int32_t count) = 0;
};

}  // namespace LibMidi
