#include "nk/platform/platform_sequencer.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>

namespace NK::Platform {

namespace {

constexpr const char* kListing = "/proc/asound/seq/clients";
constexpr std::string_view kClient = "Client ";
constexpr std::string_view kPort = "  Port ";
constexpr std::string_view kListeners = "    Connecting To: ";
constexpr std::string_view kSenders = "    Connected From: ";

std::optional<int> TakeNumber(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// `line` is what follows the port's number: ` : "name" (RWeX)`. Capitals mean that anybody may connect.
bool ReadPort(std::string_view line, SequencerPort& port) {
    const std::size_t begin = line.find('"');
    const std::size_t end = line.rfind('"');
    if (begin == std::string_view::npos || end == begin) {
        return false;
    }
    port.name = line.substr(begin + 1, end - begin - 1);
    const std::string_view rights = line.substr(std::min(line.find('(', end), line.size()));
    port.sends = rights.starts_with("(R");
    port.receives = rights.size() > 2 && rights[2] == 'W';
    return true;
}

/// `line` is a list such as "128:0, 129:0[r:0]".
void ReadConnections(std::string_view line, std::vector<SequencerAddress>& connections) {
    for (;;) {
        const auto client = TakeNumber(line);
        if (!client || !line.starts_with(':')) {
            return;
        }
        line.remove_prefix(1);
        const auto number = TakeNumber(line);
        if (!number) {
            return;
        }
        connections.push_back({*client, *number});
        const std::size_t comma = line.find(',');
        if (comma == std::string_view::npos) {
            return;
        }
        line.remove_prefix(comma + 1);
    }
}

}  // namespace

std::vector<SequencerPort> ParseSequencerPorts(std::string_view listing) {
    std::vector<SequencerPort> ports;
    std::optional<int> client;
    while (!listing.empty()) {
        const std::size_t length = listing.find('\n');
        std::string_view line = listing.substr(0, length);
        listing.remove_prefix(length == std::string_view::npos ? listing.size() : length + 1);
        if (line.starts_with(kListeners) && !ports.empty()) {
            ReadConnections(line.substr(kListeners.size()), ports.back().listeners);
        } else if (line.starts_with(kSenders) && !ports.empty()) {
            ReadConnections(line.substr(kSenders.size()), ports.back().senders);
        } else if (line.starts_with(kPort)) {
            line.remove_prefix(kPort.size());
            const auto number = TakeNumber(line);
            SequencerPort port;
            if (client && number && ReadPort(line, port)) {
                port.address = {*client, *number};
                ports.push_back(std::move(port));
            }
        } else if (line.starts_with(kClient)) {
            line.remove_prefix(kClient.size());
            client = TakeNumber(line);
        }
    }
    return ports;
}

std::optional<std::vector<SequencerPort>> ListSequencerPorts() {
    const int descriptor = open(kListing, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return std::nullopt;
    }
    std::string listing;
    std::array<char, 4096> part;
    ssize_t count = 0;
    while ((count = read(descriptor, part.data(), part.size())) > 0) {
        listing.append(part.data(), static_cast<std::size_t>(count));
    }
    close(descriptor);
    if (count < 0) {
        return std::nullopt;
    }
    return ParseSequencerPorts(listing);
}

SequencerAccess LookAtSequencer(const char* device) {
    const int descriptor = open(device, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor >= 0) {
        close(descriptor);
        return SequencerAccess::kGranted;
    }
    switch (errno) {
        case ENOENT:
        case ENODEV:
        case ENXIO:
            return SequencerAccess::kAbsent;
        case EACCES:
        case EPERM:
            return SequencerAccess::kForbidden;
        default:
            return SequencerAccess::kFailed;
    }
}

}  // namespace NK::Platform
