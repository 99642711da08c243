// What the ports on the ALSA sequencer are called.
#pragma once

#include <string>

#include "libmidi/alsa/AlsaClient.h"
#include "nk/nk_string.h"

namespace LibMidi::AlsaNames {

// On the sequencer.
inline constexpr const char* kClient = "Kivora LX";
inline constexpr const char* kPublicSender = "Kivora LX out";
inline constexpr const char* kPublicReceiver = "Kivora LX in";

/// The name under which a port is listed: the port's own where it begins with its client's, else both. [any]
std::string Compose(const AlsaListedPort& port);
/// The name of what sends from there among all that is listed now, the second one of a name with " (2)" behind it and
/// so on; empty for what is not listed. [any]
NK::CString FindSender(const AlsaClient& client, snd_seq_addr_t address);
/// Whether the port's client is another instance of this program. [any]
bool IsOwnKind(const AlsaListedPort& port);

}  // namespace LibMidi::AlsaNames
