#include "libmidi/MIDIPort.h"

NK::CString Use(LibMidi::MIDIPort& port) {
#ifdef KIVORA_MISTAKE
    port.GetName() = NK::CString(L"another name");
#endif
    return port.GetName();
}
