// Any bytes as MIDI events and as variable-length quantities: what was read must write and read back the same.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "midi/CMIDIMessageX.h"
#include "nk/nk_memory_file.h"

namespace {

using namespace NK;
using namespace NK::MIDI;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void ReadQuantities(CMemoryFile& file) {
    for (bool error = false; !error;) {
        const std::uint32_t value = ReadVariableLength(file, error);
        if (error) {
            Require(value == 0);
            break;
        }
        CMemoryFile copy;
        Require(WriteVariableLength(copy, value) && copy.GetLength() <= 5 && copy.SeekToStart());
        bool copyError = true;
        Require(ReadVariableLength(copy, copyError) == value && !copyError);
    }
}

void RequireThatItReadsBack(const CMIDIMessageX& event) {
    CMemoryFile copy;
    Require(event.Write(copy) && copy.SeekToStart());
    CMIDIMessageX again;
    Require(again.Read(copy) && again.Equals(event, true) && copy.GetPosition() == copy.GetLength());
}

void ReadEvents(CMemoryFile& file) {
    for (;;) {
        CMIDIMessageX event;
        const std::int64_t start = file.GetPosition();
        if (!event.Read(file)) {
            Require(event.kind == CMIDIMessageX::kEmpty && event.data.IsEmpty() && event.time == -1);
            return;
        }
        Require(file.GetPosition() > start);
        static_cast<void>(event.GetText());
        RequireThatItReadsBack(event);
        if (event.kind == CMIDIMessageX::kShort) {
            wchar_t text[16];
            ToString(event.message, text, 16);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CMemoryFile file(std::string_view(reinterpret_cast<const char*>(data), size));
    ReadEvents(file);
    Require(file.SeekToStart());
    ReadQuantities(file);
    return 0;
}
