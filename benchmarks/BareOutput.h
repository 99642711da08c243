// The output of the bare programs.
#pragma once

#include <portmidi.h>

#include <cstring>

namespace KivoraBench {

/// PortMidi's first output that has this in its name; null where there is none or it does not open.
inline PortMidiStream* OpenBareOutput(const char* partOfName) {
    Pm_Initialize();
    for (PmDeviceID device = 0; device < Pm_CountDevices(); ++device) {
        const PmDeviceInfo* info = Pm_GetDeviceInfo(device);
        PortMidiStream* stream = nullptr;
        if (info->output != 0 && std::strstr(info->name, partOfName) != nullptr) {
            return Pm_OpenOutput(&stream, device, nullptr, 1024, nullptr, nullptr, 0) == pmNoError ? stream : nullptr;
        }
    }
    return nullptr;
}

inline void WriteKey(PortMidiStream* output, bool isPressed, unsigned keyCode) {
    const int note = static_cast<int>(keyCode & 0x7FU);
    Pm_WriteShort(output, 0, Pm_Message(isPressed ? 0x90 : 0x80, note, 100));
}

}  // namespace KivoraBench
