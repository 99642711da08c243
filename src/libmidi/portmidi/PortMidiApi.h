// The calls to the PortMidi library, as something that a test can replace.
#pragma once

#include <portmidi.h>

#include <cstdint>

namespace LibMidi {

/// One operation for each function of PortMidi that is used, with its arguments and results (portmidi.h). [any]
class PortMidiApi {
public:
    virtual ~PortMidiApi() = default;
    virtual PmError Initialize() = 0;
    virtual PmError Terminate() = 0;
    virtual int CountDevices() = 0;
    virtual const PmDeviceInfo* GetDeviceInfo(PmDeviceID device) = 0;
    virtual PmError OpenInput(PortMidiStream** stream, PmDeviceID device, void* driverInfo, std::int32_t bufferSize,
                              PmTimeProcPtr timeProcedure, void* timeInfo) = 0;
    virtual PmError OpenOutput(PortMidiStream** stream, PmDeviceID device, void* driverInfo, std::int32_t bufferSize,
                               PmTimeProcPtr timeProcedure, void* timeInfo, std::int32_t latency) = 0;
    virtual PmError Poll(PortMidiStream* stream) = 0;
    virtual int Read(PortMidiStream* stream, PmEvent* buffer, std::int32_t length) = 0;
    virtual PmError Write(PortMidiStream* stream, PmEvent* buffer, std::int32_t length) = 0;
    virtual PmError Close(PortMidiStream* stream) = 0;
};

/// The library itself. One lock for the process is held in every call, since PortMidi promises nothing to several
/// threads at once.
PortMidiApi& RealPortMidiApi();

}  // namespace LibMidi
