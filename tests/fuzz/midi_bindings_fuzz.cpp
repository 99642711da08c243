// Any bytes as a file of bindings: what is read can be bound, and reads back the same.
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
    std::size_t refused = 0;
    const Kivora::MidiBindings read = Kivora::MidiBindings::Read(ini, refused);
    NK::CIniFile written;
    read.Write(written);
    if (!(Kivora::MidiBindings::Read(written, refused) == read) || refused != 0) {
        std::abort();
    }
    return 0;
}
