// Ports that work without a device.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "libmidi/MIDIInPortImpl.h"
#include "libmidi/MIDIOutPortImpl.h"

namespace LibMidiTest {

/// The bytes of an event as they are listed in expectations, e.g. 0x903C50.
inline std::uint32_t BytesOf(const LibMidi::MIDIEvent& event) {
    return std::uint32_t{event.status} << 16 | std::uint32_t{event.data1} << 8 | event.data2;
}

/// Keeps what is written to it, and can be told to fail.
class CFakeOutPort : public LibMidi::MIDIOutPortImpl {
public:
    explicit CFakeOutPort(const wchar_t* name = L"out", std::uint32_t flags = LibMidi::kOutput)
        : MIDIPortImpl(0, NK::CString(name), flags) {}

    std::vector<std::uint32_t> GetWritten() const {
        const std::lock_guard guard(mutex_);
        return written_;
    }
    std::vector<std::uint32_t> TakeWritten() {
        const std::lock_guard guard(mutex_);
        return std::exchange(written_, {});
    }

    /// Makes room, so that keeping what is written allocates nothing.
    static void Reserve(CFakeOutPort& port, std::size_t events) { port.written_.reserve(events); }

    bool canOpen = true;
    std::atomic<bool> canWrite{true};
    int opened = 0;
    int closed = 0;
    std::function<void()> onWrite;  ///< on the writing thread, before the event counts as written

protected:
    bool OpenDevice() override {
        ++opened;
        return canOpen;
    }
    void CloseDevice() override { ++closed; }
    bool WriteEvent(const LibMidi::MIDIEvent& event) override {
        if (onWrite) {
            onWrite();
        }
        if (!canWrite) {
            return false;
        }
        const std::lock_guard guard(mutex_);
        written_.push_back(BytesOf(event));
        return true;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::uint32_t> written_;
};

class CFakeInPort : public LibMidi::MIDIInPortImpl {
public:
    explicit CFakeInPort(const wchar_t* name = L"in", std::uint32_t flags = LibMidi::kInput)
        : MIDIPortImpl(0, NK::CString(name), flags), MIDIInPortImpl(NK::SystemSleeper()) {}

    using MIDIInPortImpl::NotifyData;
    using MIDIInPortImpl::NotifyDataLost;
    using MIDIInPortImpl::SetClosing;

    bool acceptsOpening = true;
    int closed = 0;

protected:
    bool OpenDevice() override { return true; }
    bool OnOpened() override { return acceptsOpening; }
    void CloseDevice() override { ++closed; }
};

}  // namespace LibMidiTest
