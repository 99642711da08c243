// What the system's MIDI sequencer shows of the ports of all programs and devices.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace NK::Platform {

/// A port of a program or device. The numbers of one that has gone are given again.
struct SequencerAddress {
    int client = 0;
    int port = 0;

    friend auto operator<=>(const SequencerAddress&, const SequencerAddress&) = default;
};

struct SequencerPort {
    SequencerAddress address;
    std::string name;                         ///< of the port, without its client's
    bool sends = false;                       ///< anybody may listen to it
    bool receives = false;                    ///< anybody may send to it
    std::vector<SequencerAddress> listeners;  ///< to whom it is connected
    std::vector<SequencerAddress> senders;    ///< who is connected to it
};

/// All ports by their addresses; nothing where the system does not tell. Reads no device and waits for none. [any]
std::optional<std::vector<SequencerPort>> ListSequencerPorts();

/// The ports in a listing of the kernel's ("/proc/asound/seq/clients"); lines of another form count as none.
std::vector<SequencerPort> ParseSequencerPorts(std::string_view listing);

/// What the system lets this process do with its sequencer.
enum class SequencerAccess { kGranted, kAbsent, kForbidden, kFailed };

/// Opens the device for a moment, waiting for nothing. [any]
SequencerAccess LookAtSequencer(const char* device = "/dev/snd/seq");

}  // namespace NK::Platform
