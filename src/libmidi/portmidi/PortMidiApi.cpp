#include "libmidi/portmidi/PortMidiApi.h"

#include "nk/nk_critical_section.h"

namespace LibMidi {

namespace {

class LockedPortMidi : public PortMidiApi {
public:
    PmError Initialize() override {
        const CLockGuard guard(lock_);
        return Pm_Initialize();
    }
    PmError Terminate() override {
        const CLockGuard guard(lock_);
        return Pm_Terminate();
    }
    int CountDevices() override {
        const CLockGuard guard(lock_);
        return Pm_CountDevices();
    }
    const PmDeviceInfo* GetDeviceInfo(PmDeviceID device) override {
        const CLockGuard guard(lock_);
        return Pm_GetDeviceInfo(device);
    }
    PmError OpenInput(PortMidiStream** stream, PmDeviceID device, void* driverInfo, std::int32_t bufferSize,
                      PmTimeProcPtr timeProcedure, void* timeInfo) override {
        const CLockGuard guard(lock_);
        return Pm_OpenInput(stream, device, driverInfo, bufferSize, timeProcedure, timeInfo);
    }
    PmError OpenOutput(PortMidiStream** stream, PmDeviceID device, void* driverInfo, std::int32_t bufferSize,
                       PmTimeProcPtr timeProcedure, void* timeInfo, std::int32_t latency) override {
        const CLockGuard guard(lock_);
        return Pm_OpenOutput(stream, device, driverInfo, bufferSize, timeProcedure, timeInfo, latency);
    }
    PmError Poll(PortMidiStream* stream) override {
        const CLockGuard guard(lock_);
        return Pm_Poll(stream);
    }
    int Read(PortMidiStream* stream, PmEvent* buffer, std::int32_t length) override {
        const CLockGuard guard(lock_);
        return Pm_Read(stream, buffer, length);
    }
    PmError Write(PortMidiStream* stream, PmEvent* buffer, std::int32_t length) override {
        const CLockGuard guard(lock_);
        return Pm_Write(stream, buffer, length);
    }
    PmError Close(PortMidiStream* stream) override {
        const CLockGuard guard(lock_);
        return Pm_Close(stream);
    }

private:
    CCriticalSection lock_;
};

}  // namespace

PortMidiApi& RealPortMidiApi() {
    static LockedPortMidi api;
    return api;
}

}  // namespace LibMidi
