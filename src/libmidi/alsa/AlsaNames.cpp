#include "libmidi/alsa/AlsaNames.h"

#include <algorithm>
#include <vector>

#include "libmidi/PortNames.h"

namespace LibMidi::AlsaNames {

std::string Compose(const AlsaListedPort& port) {
    if (port.port.starts_with(port.client)) {
        return port.port;
    }
    return port.port.empty() ? port.client : port.client + ": " + port.port;
}

NK::CString FindSender(const AlsaClient& client, snd_seq_addr_t address) {
    std::vector<NK::CString> names;
    for (const AlsaListedPort& port : client.ListPorts()) {
        if (!port.sends) {
            continue;
        }
        names.push_back(FindFreeName(NK::CString::FromUtf8(Compose(port)), [&names](const NK::CString& free) {
            return std::find(names.begin(), names.end(), free) != names.end();
        }));
        if (port.address == address) {
            return names.back();
        }
    }
    return {};
}

bool IsOwnKind(const AlsaListedPort& port) {
    return port.client == kClient || port.client.starts_with(std::string(kClient) + " (");
}

}  // namespace LibMidi::AlsaNames
