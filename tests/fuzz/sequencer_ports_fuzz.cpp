// Any bytes as the kernel's listing of the sequencer's ports: each port has its line, and its name stands in it.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "nk/platform/platform_sequencer.h"

namespace {

using namespace NK::Platform;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::size_t Count(std::string_view text, char character) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), character));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view listing(reinterpret_cast<const char*>(data), size);
    const std::vector<SequencerPort> ports = ParseSequencerPorts(listing);
    Require(ports.size() <= Count(listing, '\n') + 1);
    std::size_t connections = 0;
    for (const SequencerPort& port : ports) {
        Require(port.name.find('\n') == std::string::npos && listing.find(port.name) != std::string_view::npos);
        connections += port.listeners.size() + port.senders.size();
    }
    Require(connections <= Count(listing, ':'));
    return 0;
}
