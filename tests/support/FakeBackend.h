// A MIDI backend without devices: its ports do what the test says and remember what was written.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "libmidi/MIDIInPortImpl.h"
#include "libmidi/MIDIOutPortImpl.h"
#include "libmidi/PortFactory.h"
#include "nk/nk_exception.h"
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
        const std::lock_guard guard(mutex_);
        std::vector<std::string> texts;
        for (const LibMidi::MIDIEvent& event : written_) {
            texts.push_back(ToText(event));
        }
        written_.clear();
        return texts;
    }

    LibMidi::DeviceState Look() const {
        if (onLook) {
            onLook();
        }
        return state;
    }

    const std::wstring name;
    const std::uint32_t flags;
    bool failsToOpen = false;
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
    int openAttempts = 0;
    int openCount = 0;
    int closedInVain = 0;  ///< how often its output was closed that was not open
    bool isOpen = false;

private:
    std::mutex mutex_;
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
    void OnClosing() override {
        if (onClosing) {
            onClosing();
        }
    }
    void CloseDevice() override {
        log_("input closed");
        device_.isOpen = false;
    }

private:
    FakeDevice& device_;
    FakeLog log_;
};

/// Makes a port for each device that is plugged in whenever the port factory asks.
class FakeBackend {
public:
    enum class Creation { kWorks, kNone, kThrows };

    FakeDevice& Plug(const std::wstring& name, std::uint32_t flags) {
        devices.push_back(std::make_shared<FakeDevice>(name, flags));
        return *devices.back();
    }
    void Unplug(const std::wstring& name) {
        std::erase_if(devices, [&](const auto& device) { return device->name == name; });
    }

    LibMidi::BackendCreator GetCreator() {
        return [this]() -> std::unique_ptr<LibMidi::MIDIPortsImpl> {
            if (creation == Creation::kThrows) {
                throw NK::CException(L"no devices");
            }
            return creation == Creation::kNone ? nullptr : std::make_unique<Ports>(*this);
        };
    }

    /// The live port of that name, or null.
    FakeOutPort* GetOut(const std::wstring& name) { return Find(outs_, name); }
    FakeInPort* GetIn(const std::wstring& name) { return Find(ins_, name); }

    std::vector<std::shared_ptr<FakeDevice>> devices;  ///< a null entry makes a null port
    Creation creation = Creation::kWorks;
    bool fixed = false;
    bool follows = false;            ///< the set stays, and lists what is plugged in when it is updated
    std::function<void()> tell;      ///< of the live set: devices have come or gone
    std::function<void()> onUpdate;  ///< called when the live set is to look for devices
    std::wstring defaultInput;       ///< empty for none
    std::wstring defaultOutput;
    int created = 0;
    FakeLog log = [](const std::string&) {};

private:
    class Ports : public LibMidi::MIDIPortsImpl {
    public:
        explicit Ports(FakeBackend& backend) : backend_(backend) {
            ++backend_.created;
            ListPorts();
        }
        ~Ports() override {
            backend_.ins_.clear();
            backend_.outs_.clear();
            backend_.log("ports destroyed");
        }

        const LibMidi::MIDIPortContainer& GetPorts() const override { return list_; }
        LibMidi::MIDIInPort* GetDefaultInput() const override {
            return list_.FindInputByName(backend_.defaultInput.c_str());
        }
        LibMidi::MIDIOutPort* GetDefaultOutput() const override {
            return list_.FindOutputByName(backend_.defaultOutput.c_str());
        }
        bool IsFixed() const override { return backend_.fixed; }
        bool StaysThroughRescan() const override { return backend_.fixed || backend_.follows; }
        void Update() override {
            if (backend_.onUpdate) {
                backend_.onUpdate();
            }
            if (backend_.follows) {
                ListPorts();
            }
        }
        void TellOfDevices(std::function<void()> teller) override { backend_.tell = std::move(teller); }

    private:
        class List : public LibMidi::MIDIPortWalker {
        public:
            std::uint32_t GetCount() const override { return static_cast<std::uint32_t>(ports.size()); }
            LibMidi::MIDIPort* GetPort(std::uint32_t index) const override {
                return index < ports.size() ? ports[index] : nullptr;
            }
            std::vector<LibMidi::MIDIPort*> ports;
        };
        struct Made {
            std::shared_ptr<FakeDevice> device;
            std::unique_ptr<LibMidi::MIDIPort> port;
        };

        void ListPorts() {
            list_.ports.clear();
            for (const auto& device : backend_.devices) {
                list_.ports.push_back(FindOrMake(device));
            }
        }
        LibMidi::MIDIPort* FindOrMake(const std::shared_ptr<FakeDevice>& device) {
            for (const Made& made : made_) {
                if (made.device == device) {
                    return made.port.get();
                }
            }
            made_.push_back({device, Make(device.get())});
            return made_.back().port.get();
        }
        std::unique_ptr<LibMidi::MIDIPort> Make(FakeDevice* device) {
            const int number = static_cast<int>(made_.size());
            if (device == nullptr) {
                return nullptr;
            }
            if ((device->flags & LibMidi::kInput) != 0) {
                auto port = std::make_unique<FakeInPort>(number, *device, backend_.log);
                backend_.ins_[device->name] = port.get();
                return port;
            }
            auto port = std::make_unique<FakeOutPort>(number, *device, backend_.log);
            backend_.outs_[device->name] = port.get();
            return port;
        }

        FakeBackend& backend_;
        std::vector<Made> made_;
        List list_;
    };

    template <class Port>
    static Port* Find(const std::map<std::wstring, Port*>& ports, const std::wstring& name) {
        const auto found = ports.find(name);
        return found == ports.end() ? nullptr : found->second;
    }

    std::map<std::wstring, FakeOutPort*> outs_;
    std::map<std::wstring, FakeInPort*> ins_;
};

}  // namespace KivoraTest
