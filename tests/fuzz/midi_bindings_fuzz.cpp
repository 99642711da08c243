// Any bytes as a file of bindings: what is read can be bound, and reads back the same.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "engine/values/MidiBindings.h"
#include "nk/nk_memory_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    NK::CMemoryFile file(std::string_view(reinterpret_cast<const char*>(data), size));
    NK::CIniFile ini;
    if (!ini.Load(file)) {
        return 0;
    }
    Kivora::MidiBindings::Refused refused;
    const Kivora::MidiBindings read = Kivora::MidiBindings::Read(ini, refused);
    NK::CIniFile written;
    read.Write(written);
    const Kivora::MidiBindings again = Kivora::MidiBindings::Read(written, refused);
    if (!std::is_permutation(again.GetAll().begin(), again.GetAll().end(), read.GetAll().begin(),
                             read.GetAll().end()) ||
        refused.damaged != 0 || refused.unknown != 0) {
        std::abort();
    }
    if (ini.GetSize() < NK::CIniFile::kMaxLines) {
        const std::uint32_t lines = ini.GetSize();
        read.Write(ini);
        if (lines != 0 && ini.GetSize() > lines) {
            std::abort();  // all of it was there
        }
    }
    return 0;
}
