// A stand-in for the PortMidi library. By itself it has one output and one input that is never played; what is written
// to the output is appended to the file that KIVORA_STANDIN_LOG names, a line a message. Where a test lends devices,
// they are in their place: they come and go, are played, and fail when the test says so.
#include <fcntl.h>
#include <portmidi.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "SharedDevices.h"

namespace {

using Standin::kInput;
using Standin::TSharedDevices;

char kInterface[] = "Stand-in";
char kOutputName[] = "Stand-in Software synthesizer";
char kSecondOutputName[] = "Stand-in Expander";
char kInputName[] = "Stand-in keyboard";
const PmDeviceInfo kDevices[Standin::kDeviceCount] = {{1, kInterface, kOutputName, 0, 1, 0},
                                                      {1, kInterface, kSecondOutputName, 0, 1, 0},
                                                      {1, kInterface, kInputName, 1, 0, 0}};

struct TStream {
    int device = 0;
    std::uint32_t presence = 0;
};

/// What Pm_Initialize() found, by PortMidi's numbers.
int found[Standin::kDeviceCount];
int foundCount = 0;

/// Null where no test lends any.
TSharedDevices* Shared() {
    static TSharedDevices* const shared = []() -> TSharedDevices* {
        const char* path = std::getenv("KIVORA_STANDIN_DEVICES");
        const int file = path == nullptr ? -1 : open(path, O_RDWR | O_CLOEXEC);
        if (file < 0) {
            return nullptr;
        }
        void* memory = mmap(nullptr, sizeof(TSharedDevices), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        close(file);
        return memory == MAP_FAILED ? nullptr : static_cast<TSharedDevices*>(memory);
    }();
    return shared;
}

bool IsThere(int device) {
    return Shared() != nullptr ? Shared()->presence[device] % 2 == 1 : device != 1;
}

bool IsAlive(const TStream& stream) {
    return Shared() == nullptr || Shared()->presence[stream.device] == stream.presence;
}

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

PmError Write(const TStream& stream, PmMessage message) {
    TSharedDevices* const shared = Shared();
    if (shared == nullptr) {
        Record(message);
        return pmNoError;
    }
    if (!IsAlive(stream) || shared->writtenCount == Standin::kWrittenSize) {
        return pmHostError;
    }
    if (shared->writesToFail > 0) {
        --shared->writesToFail;
        shared->openAs[stream.device] = 0;
        return pmHostError;
    }
    const auto device = static_cast<std::uint32_t>(stream.device) << 24U;
    shared->written[shared->writtenCount] = (static_cast<std::uint32_t>(message) & 0xFFFFFFU) | device;
    ++shared->writtenCount;
    return pmNoError;
}

PmError Open(PortMidiStream** stream, PmDeviceID number, bool input) {
    if (number < 0 || number >= foundCount || (kDevices[found[number]].input != 0) != input) {
        return pmInvalidDeviceId;
    }
    const int device = found[number];
    if (!IsThere(device)) {
        return pmHostError;
    }
    auto* const opened = new TStream{device};
    if (TSharedDevices* const shared = Shared()) {
        opened->presence = shared->presence[device];
        if (input) {
            shared->read = shared->played.load();  // what was played to nobody
        }
        shared->openAs[device] = opened->presence;
    }
    *stream = opened;
    return pmNoError;
}

}  // namespace

extern "C" {

PmError Pm_Initialize(void) {
    foundCount = 0;
    for (int device = 0; device < Standin::kDeviceCount; ++device) {
        if (IsThere(device)) {
            found[foundCount++] = device;
        }
    }
    return pmNoError;
}
PmError Pm_Terminate(void) {
    foundCount = 0;
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
    return foundCount;
}
PmDeviceID Pm_GetDefaultInputDeviceID(void) {
    return pmNoDevice;
}
PmDeviceID Pm_GetDefaultOutputDeviceID(void) {
    return pmNoDevice;
}
const PmDeviceInfo* Pm_GetDeviceInfo(PmDeviceID id) {
    return id >= 0 && id < foundCount ? &kDevices[found[id]] : nullptr;
}
PmError Pm_OpenInput(PortMidiStream** stream, PmDeviceID device, void*, int32_t, PmTimeProcPtr, void*) {
    return Open(stream, device, true);
}
PmError Pm_OpenOutput(PortMidiStream** stream, PmDeviceID device, void*, int32_t, PmTimeProcPtr, void*, int32_t) {
    return Open(stream, device, false);
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
PmError Pm_Close(PortMidiStream* stream) {
    const auto* const closed = static_cast<TStream*>(stream);
    if (TSharedDevices* const shared = Shared()) {
        shared->openAs[closed->device] = 0;
    }
    delete closed;
    return pmNoError;
}
int Pm_Read(PortMidiStream* stream, PmEvent* events, int32_t count) {
    TSharedDevices* const shared = Shared();
    if (shared == nullptr || count < 1) {
        return 0;
    }
    if (!IsAlive(*static_cast<TStream*>(stream))) {
        return pmHostError;
    }
    if (shared->overflowsTold != shared->overflows) {
        ++shared->overflowsTold;
        shared->read = shared->played.load();
        return pmBufferOverflow;
    }
    int taken = 0;
    for (; taken < count && shared->read != shared->played; ++taken) {
        events[taken] = {static_cast<PmMessage>(shared->input[shared->read % Standin::kInputSize].load()), 0};
        ++shared->read;
    }
    return taken;
}
PmError Pm_Poll(PortMidiStream* stream) {
    TSharedDevices* const shared = Shared();
    if (shared == nullptr) {
        return pmNoError;
    }
    ++shared->inputRounds;
    if (!IsAlive(*static_cast<TStream*>(stream))) {
        return pmHostError;
    }
    return shared->read != shared->played || shared->overflowsTold != shared->overflows ? pmGotData : pmNoError;
}
PmError Pm_Write(PortMidiStream* stream, PmEvent* events, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        if (const PmError error = Write(*static_cast<TStream*>(stream), events[i].message); error != pmNoError) {
            return error;
        }
    }
    return pmNoError;
}
PmError Pm_WriteShort(PortMidiStream* stream, PmTimestamp, PmMessage message) {
    return Write(*static_cast<TStream*>(stream), message);
}
PmError Pm_WriteSysEx(PortMidiStream*, PmTimestamp, unsigned char*) {
    return pmNoError;
}

}  // extern "C"
