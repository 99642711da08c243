// A MIDI backend without devices: its ports do what the test says and remember what was written.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "libmidi/PortFactory.h"
#include "nk/nk_exception.h"
#include "support/FakePorts.h"

namespace KivoraTest {

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
