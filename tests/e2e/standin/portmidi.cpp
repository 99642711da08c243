// A stand-in for the PortMidi library with one output and one input: what is written to the output is appended to the
// file that KIVORA_STANDIN_LOG names, a line a message.
#include <portmidi.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

char kInterface[] = "Stand-in";
char kOutputName[] = "Stand-in Software synthesizer";
char kInputName[] = "Stand-in keyboard";
const PmDeviceInfo kDevices[] = {{1, kInterface, kOutputName, 0, 1, 0}, {1, kInterface, kInputName, 1, 0, 0}};
constexpr int kDeviceCount = 2;

int streams[kDeviceCount];

void Record(PmMessage message) {
    const char* path = std::getenv("KIVORA_STANDIN_LOG");
    if (path == nullptr) {
        return;
    }
    timespec now{};
    std::timespec_get(&now, TIME_UTC);
    if (FILE* log = std::fopen(path, "a")) {
        std::fprintf(log, "%02X %02X %02X %lld.%09ld\n", static_cast<unsigned>(Pm_MessageStatus(message)),
                     static_cast<unsigned>(Pm_MessageData1(message)), static_cast<unsigned>(Pm_MessageData2(message)),
                     static_cast<long long>(now.tv_sec), now.tv_nsec);
        std::fclose(log);
    }
}

PmError OpenStream(PortMidiStream** stream, PmDeviceID device) {
    if (device < 0 || device >= kDeviceCount) {
        return pmInvalidDeviceId;
    }
    *stream = &streams[device];
    return pmNoError;
}

}  // namespace

extern "C" {

PmError Pm_Initialize(void) {
    return pmNoError;
}
PmError Pm_Terminate(void) {
    return pmNoError;
}
int Pm_HasHostError(PortMidiStream*) {
    return 0;
}
const char* Pm_GetErrorText(PmError) {
    return "";
}
void Pm_GetHostErrorText(char* text, unsigned int length) {
    if (length > 0) {
        *text = 0;
    }
}
int Pm_CountDevices(void) {
    return kDeviceCount;
}
PmDeviceID Pm_GetDefaultInputDeviceID(void) {
    return 1;
}
PmDeviceID Pm_GetDefaultOutputDeviceID(void) {
    return 0;
}
const PmDeviceInfo* Pm_GetDeviceInfo(PmDeviceID id) {
    return id >= 0 && id < kDeviceCount ? &kDevices[id] : nullptr;
}
PmError Pm_OpenInput(PortMidiStream** stream, PmDeviceID device, void*, int32_t, PmTimeProcPtr, void*) {
    return OpenStream(stream, device);
}
PmError Pm_OpenOutput(PortMidiStream** stream, PmDeviceID device, void*, int32_t, PmTimeProcPtr, void*, int32_t) {
    return OpenStream(stream, device);
}
PmError Pm_SetFilter(PortMidiStream*, int32_t) {
    return pmNoError;
}
PmError Pm_SetChannelMask(PortMidiStream*, int) {
    return pmNoError;
}
PmError Pm_Abort(PortMidiStream*) {
    return pmNoError;
}
PmError Pm_Close(PortMidiStream*) {
    return pmNoError;
}
int Pm_Read(PortMidiStream*, PmEvent*, int32_t) {
    return 0;
}
PmError Pm_Poll(PortMidiStream*) {
    return pmNoError;
}
PmError Pm_Write(PortMidiStream*, PmEvent* events, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        Record(events[i].message);
    }
    return pmNoError;
}
PmError Pm_WriteShort(PortMidiStream*, PmTimestamp, PmMessage message) {
    Record(message);
    return pmNoError;
}
PmError Pm_WriteSysEx(PortMidiStream*, PmTimestamp, unsigned char*) {
    return pmNoError;
}

}  // extern "C"
