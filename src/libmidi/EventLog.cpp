#include "libmidi/EventLog.h"

#include "nk/nk_logger.h"

namespace LibMidi {

void LogEvent(const wchar_t* what, const NK::CString& portName, const MIDIEvent& event) {
    if (NK::IsEventLogEnabled()) {
        NK::Log(NK::CString::Format(L"%ls %ls: %02X %02X %02X", what, portName.c_str(), unsigned{event.status},
                                    unsigned{event.data1}, unsigned{event.data2}));
    }
}

}  // namespace LibMidi
