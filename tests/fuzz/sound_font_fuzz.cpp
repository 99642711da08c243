// Any bytes as a sound font: what is let through is a RIFF form that is the whole file, and is let through again.
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

#include "libmidi/synth/SoundFontFile.h"

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

bool IsLetThrough(const std::string& content) {
    std::istringstream stream(content, std::ios::binary);
    return LibMidi::CheckSoundFont(stream).IsEmpty();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string content(reinterpret_cast<const char*>(data), size);
    if (IsLetThrough(content)) {
        Require(content.starts_with("RIFF") && std::string_view(content).substr(8, 4) == "sfbk");
        Require(IsLetThrough(content));
        Require(!IsLetThrough(content.substr(0, size - 2)));
    }
    return 0;
}
