#include "libmidi/alsa/AlsaNames.h"

namespace LibMidi::AlsaNames {

std::string Compose(const AlsaListedPort& port) {
    if (port.port.starts_with(port.client)) {
        return port.port;
    }
    return port.port.empty() ? port.client : port.client + ": " + port.port;
}

bool IsOwnKind(const AlsaListedPort& port) {
    return port.client == kClient || port.client.starts_with(std::string(kClient) + " (");
}

}  // namespace LibMidi::AlsaNames
