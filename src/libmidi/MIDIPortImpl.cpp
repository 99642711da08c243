#include "libmidi/MIDIPortImpl.h"
#include "nk/nk_thread_role.h"

namespace LibMidi {

MIDIPortImpl::MIDIPortImpl(int device, const NK::CString& name, std::uint32_t flags)
    : device_(device), name_(name), flags_(flags) {
}

Result MIDIPortImpl::Open() {
    NK_ASSERT_THREAD_ROLE(gui);
    if (IsUnavailable()) {
        return kUnavailable;
    }
    if (IsOpen()) {
        return kAlreadyOpen;
    }
    {
        const CLockGuard guard(deviceLock_);
        if (!OpenDevice()) {
            return kDeviceError;
        }
        flags_.fetch_or(kOpen, std::memory_order_acq_rel);
    }
    if (!OnOpened()) {
        LeaveOpenState();
        return kDeviceError;
    }
    return kSuccess;
}

Result MIDIPortImpl::Close() {
    NK_ASSERT_THREAD_ROLE(gui);
    if (IsUnavailable()) {
        return kUnavailable;
    }
    if (!IsOpen()) {
        return kNotOpen;
    }
    OnClosing();
    LeaveOpenState();
    return kSuccess;
}

void MIDIPortImpl::LeaveOpenState() {
    const CLockGuard guard(deviceLock_);
    flags_.fetch_and(~std::uint32_t{kOpen}, std::memory_order_acq_rel);
    CloseDevice();
}

}  // namespace LibMidi
