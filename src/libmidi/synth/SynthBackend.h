// The built-in synthesizer as a backend of the port factory. [gui]
#pragma once

#include <memory>

#include "libmidi/PortFactory.h"
#include "libmidi/synth/Synthesizer.h"

namespace LibMidi {

/// The synthesizer is shared with whoever shows its settings.
BackendCreator MakeSynthBackend(std::shared_ptr<Synthesizer> synthesizer);

}  // namespace LibMidi
