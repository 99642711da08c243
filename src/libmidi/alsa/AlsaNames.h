// What the ports on the ALSA sequencer are called.
#pragma once

#include <string>

#include "libmidi/alsa/AlsaClient.h"

namespace LibMidi::AlsaNames {

// On the sequencer.
inline constexpr const char* kClient = "Kivora LX";
inline constexpr const char* kPublicSender = "Kivora LX out";
inline constexpr const char* kPublicReceiver = "Kivora LX in";

/// The name under which a port is listed: the port's own where it begins with its client's, else both.
std::string Compose(const AlsaListedPort& port);
/// Whether the port's client is another instance of this program.
bool IsOwnKind(const AlsaListedPort& port);

}  // namespace LibMidi::AlsaNames
