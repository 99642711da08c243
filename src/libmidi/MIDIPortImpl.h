// What the ports of every backend share: name, flags, and the order of the checks. [base]
#pragma once

#include <atomic>
#include <cstdint>

#include "libmidi/MIDIPort.h"
#include "nk/nk_critical_section.h"

namespace LibMidi {

/// A port of one device. A subclass says how its device is opened and closed.
class MIDIPortImpl : public virtual MIDIPort {
public:
    /// The device's number within its backend, 0 or more; `flags` is kInput, kOutput or both, with kUnavailableFlag
    /// for a port that never works.
    MIDIPortImpl(int device, const NK::CString& name, std::uint32_t flags);
    MIDIPortImpl(const MIDIPortImpl&) = delete;
    MIDIPortImpl& operator=(const MIDIPortImpl&) = delete;

    const NK::CString& GetName() const override { return name_; }
    std::uint32_t GetFlags() const override { return flags_.load(std::memory_order_acquire); }
    int GetDevice() const noexcept { return device_; }

    Result Open() override;
    Result Close() override;

protected:
    /// Opens the device; false when it fails.
    virtual bool OpenDevice() NK_REQUIRES(deviceLock_) = 0;
    /// The port has just become open; false takes that back and fails the opening. Called without the lock.
    virtual bool OnOpened() { return true; }
    /// The port is about to be closed. Called without the lock.
    virtual void OnClosing() {}
    /// Closes the device; the port counts as closed already.
    virtual void CloseDevice() NK_REQUIRES(deviceLock_) = 0;

    bool IsUnavailable() const { return (GetFlags() & kUnavailableFlag) != 0; }
    bool IsOpen() const { return (GetFlags() & kOpen) != 0; }

    /// Held while the device is opened, closed, read or written, so that nobody uses one that is being closed.
    mutable CCriticalSection deviceLock_;

private:
    void LeaveOpenState();

    const int device_;
    const NK::CString name_;
    std::atomic<std::uint32_t> flags_;
};

}  // namespace LibMidi
