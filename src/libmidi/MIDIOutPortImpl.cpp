#include "libmidi/MIDIOutPortImpl.h"

#include "libmidi/EventLog.h"

namespace LibMidi {

Result MIDIOutPortImpl::Write(const MIDIEvent* events, std::int32_t count) {
    if (IsUnavailable()) {
        return kUnavailable;
    }
    if (events == nullptr) {
        return kNoData;
    }
    const CLockGuard guard(deviceLock_);
    if (!IsOpen()) {
        return kNotOpen;
    }
    for (std::int32_t index = 0; index < count; ++index) {
        if (!WriteEvent(events[index])) {
            return kDeviceError;
        }
        LogEvent(L"MIDI out", GetName(), events[index]);
    }
    return kSuccess;
}

}  // namespace LibMidi
