// The ALSA sequencer as a backend of the port factory. [gui]
#pragma once

#include <memory>

#include "libmidi/alsa/AlsaClient.h"
#include "libmidi/PortFactory.h"

namespace LibMidi {

/// The client, which is open, lives through all port sets, so that what other programs connect to it stays.
BackendCreator MakeAlsaBackend(std::shared_ptr<AlsaClient> client);

}  // namespace LibMidi
