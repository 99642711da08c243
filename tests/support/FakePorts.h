// Devices that are made up, and the ports of them: by a backend, or one with a device of its own.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "libmidi/MIDIInPortImpl.h"
#include "libmidi/MIDIOutPortImpl.h"
#include "nk/nk_sleep.h"

namespace KivoraTest {

/// A message as text: its bytes in hexadecimal, such as "90 3c 64"; only as many as it has on the wire.
inline std::string ToText(const LibMidi::MIDIEvent& event) {
    static constexpr char kDigits[] = "0123456789abcdef";
    const std::uint8_t bytes[] = {event.status, event.data1, event.data2};
    std::string text;
    for (int i = 0; i < NK::MIDI::TMIDIMessage::GetLength(event.status); ++i) {
        text += i == 0 ? "" : " ";
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 15];
    }
    return text;
}

/// What one device can do, and what has been written to it; lives longer than the ports that are made for it. [any]
class FakeDevice {
public:
    FakeDevice(std::wstring deviceName, std::uint32_t portFlags) : name(std::move(deviceName)), flags(portFlags) {}

    bool Write(const LibMidi::MIDIEvent& event) {
        if (onWriting) {
            onWriting();
        }
        const std::lock_guard guard(mutex_);
        if (failsToWrite || (failedWrites > 0 && failedWrites-- > 0)) {
            return false;
        }
        if (keepsWritten) {
            written_.push_back(event);
        }
        if (onWrite) {
            onWrite(event);
        }
        return true;
    }
    bool HadName(const NK::CString& other) const { return !formerName.empty() && other == formerName.c_str(); }
    /// What has been written since the last call.
    std::vector<std::string> TakeWritten() {
        std::vector<std::string> texts;
        for (const LibMidi::MIDIEvent& event : TakeEvents()) {
            texts.push_back(ToText(event));
        }
        return texts;
    }
    std::vector<LibMidi::MIDIEvent> TakeEvents() {
        const std::lock_guard guard(mutex_);
        const std::vector<LibMidi::MIDIEvent> events = written_;
        written_.clear();  // and the room stays
        return events;
    }
    /// The same, which stay.
    std::vector<LibMidi::MIDIEvent> GetEvents() const {
        const std::lock_guard guard(mutex_);
        return written_;
    }
    /// Makes room, so that keeping what is written allocates nothing.
    void Reserve(std::size_t events) { written_.reserve(events); }

    LibMidi::DeviceState Look() const {
        if (onLook) {
            onLook();
        }
        return state;
    }

    const std::wstring name;
    const std::uint32_t flags;
    bool failsToOpen = false;
    bool takesOpeningBack = false;  ///< of an input: it opens, and the opening does not last
    std::atomic<bool> failsToWrite = false;
    int failedWrites = 0;  ///< so many writes fail, and those after them work
    /// A port that has failed is reached no more, however often it is opened: a new set has another for the device.
    bool failsPortsForGood = false;
    /// What a look at the port says while the device is open.
    std::atomic<LibMidi::DeviceState> state = LibMidi::DeviceState::kWorks;
    std::function<void()> onLook;  ///< called when it is looked at
    std::wstring formerName;       ///< by another way of listing, empty for none
    bool keepsWritten = true;      ///< whether TakeWritten() has anything to give
    /// Called with each message written, on the writing thread.
    std::function<void(const LibMidi::MIDIEvent&)> onWrite;
    std::function<void()> onWriting;  ///< called before anything is written, on the writing thread
    int openAttempts = 0;
    int openCount = 0;
    int closeCount = 0;
    int closedInVain = 0;  ///< how often its output was closed that was not open
    bool isOpen = false;

private:
    mutable std::mutex mutex_;
    std::vector<LibMidi::MIDIEvent> written_;
};

using FakeLog = std::function<void(const std::string&)>;

class FakeOutPort : public LibMidi::MIDIOutPortImpl {
public:
    FakeOutPort(int number, FakeDevice& device, FakeLog log)
        : MIDIPortImpl(number, NK::CString(std::wstring_view(device.name)), device.flags),
          device_(device),
          log_(std::move(log)) {}
    ~FakeOutPort() override { MIDIOutPortImpl::Close(); }

    LibMidi::Result Close() override {
        const LibMidi::Result result = MIDIOutPortImpl::Close();
        device_.closedInVain += result == LibMidi::kNotOpen ? 1 : 0;
        return result;
    }
    LibMidi::DeviceState LookAtDevice() override {
        return hasFailed_ && device_.failsPortsForGood ? LibMidi::DeviceState::kElsewhere : device_.Look();
    }
    bool HadName(const NK::CString& name) const override { return device_.HadName(name); }

protected:
    bool OpenDevice() override {
        ++device_.openAttempts;
        if (device_.failsToOpen) {
            return false;
        }
        log_("output opened");
        ++device_.openCount;
        device_.isOpen = true;
        return true;
    }
    void CloseDevice() override {
        log_("output closed");
        ++device_.closeCount;
        device_.isOpen = false;
    }
    bool WriteEvent(const LibMidi::MIDIEvent& event) override {
        const bool isWritten = device_.Write(event);
        hasFailed_ = hasFailed_ || !isWritten;
        return isWritten;
    }

private:
    FakeDevice& device_;
    FakeLog log_;
    std::atomic<bool> hasFailed_ = false;
};

class FakeInPort : public LibMidi::MIDIInPortImpl {
public:
    FakeInPort(int number, FakeDevice& device, FakeLog log)
        : MIDIPortImpl(number, NK::CString(std::wstring_view(device.name)), device.flags),
          MIDIInPortImpl(NK::SystemSleeper()),
          device_(device),
          log_(std::move(log)) {}
    ~FakeInPort() override { Close(); }

    LibMidi::DeviceState LookAtDevice() override { return device_.Look(); }
    bool HadName(const NK::CString& name) const override { return device_.HadName(name); }

    /// Tells the listeners on the calling thread, which plays the part of the port's own.
    void Deliver(std::vector<LibMidi::MIDIEvent> events) {
        NotifyData(events.data(), static_cast<std::int32_t>(events.size()));
    }
    void Deliver(std::uint8_t status, std::uint8_t data1, std::uint8_t data2 = 0) {
        Deliver({LibMidi::MIDIEvent(0, status, data1, data2)});
    }
    void Lose(std::uint32_t count) {
        SetLostCount(GetLostCount() + count);
        NotifyDataLost(count);
    }
    using MIDIInPortImpl::NotifyData;
    using MIDIInPortImpl::NotifyDataLost;
    using MIDIInPortImpl::SetClosing;

    const NK::CString& GetSourceName(std::uint8_t source) const override {
        if (onNameAsked) {
            onNameAsked();
        }
        const auto named = sourceNames.find(source);
        return named != sourceNames.end() ? named->second : GetName();
    }

    std::map<std::uint8_t, NK::CString> sourceNames;  ///< of those that do not have the port's own
    std::function<void()> onNameAsked;
    /// Called when the port is about to be closed.
    std::function<void()> onClosing;

protected:
    bool OpenDevice() override {
        ++device_.openAttempts;
        if (device_.failsToOpen) {
            return false;
        }
        log_("input opened");
        ++device_.openCount;
        device_.isOpen = true;
        return true;
    }
    bool OnOpened() override { return !device_.takesOpeningBack; }
    void OnClosing() override {
        if (onClosing) {
            onClosing();
        }
    }
    void CloseDevice() override {
        log_("input closed");
        ++device_.closeCount;
        device_.isOpen = false;
    }

private:
    FakeDevice& device_;
    FakeLog log_;
};

/// The bytes of an event as a number, e.g. 0x903C50.
inline std::uint32_t BytesOf(const LibMidi::MIDIEvent& event) {
    return std::uint32_t{event.status} << 16 | std::uint32_t{event.data1} << 8 | event.data2;
}

/// The device of one port, made before it.
struct CDeviceOfItsOwn {
    CDeviceOfItsOwn(const wchar_t* name, std::uint32_t flags) : device(name, flags) {}

    FakeDevice device;
};

class CFakeOutPort : public CDeviceOfItsOwn, public FakeOutPort {
public:
    explicit CFakeOutPort(const wchar_t* name = L"out", std::uint32_t flags = LibMidi::kOutput)
        : MIDIPortImpl(0, NK::CString(name), flags),
          CDeviceOfItsOwn(name, flags),
          FakeOutPort(0, device, [](const std::string&) {}) {}

    std::vector<std::uint32_t> GetWritten() const { return ToNumbers(device.GetEvents()); }
    std::vector<std::uint32_t> TakeWritten() { return ToNumbers(device.TakeEvents()); }

private:
    static std::vector<std::uint32_t> ToNumbers(const std::vector<LibMidi::MIDIEvent>& events) {
        std::vector<std::uint32_t> numbers;
        for (const LibMidi::MIDIEvent& event : events) {
            numbers.push_back(BytesOf(event));
        }
        return numbers;
    }
};

class CFakeInPort : public CDeviceOfItsOwn, public FakeInPort {
public:
    explicit CFakeInPort(const wchar_t* name = L"in", std::uint32_t flags = LibMidi::kInput)
        : MIDIPortImpl(0, NK::CString(name), flags),
          CDeviceOfItsOwn(name, flags),
          FakeInPort(0, device, [](const std::string&) {}) {}
};

}  // namespace KivoraTest
