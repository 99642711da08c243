// The volume of the system's sound. [gui]
#pragma once

#include <optional>
#include <QByteArray>

#include "ui/dialogs/SoundFindings.h"

namespace Kivora {

struct SystemVolume {
    SoundFindings::Volume state = SoundFindings::Volume::kNoAnswer;
    bool isMuted = false;
    int percent = 0;
};

/// Of the default output of PulseAudio's or PipeWire's server, as its own tool tells it. Waits two seconds at most.
SystemVolume AskSystemVolume();

/// From the tool's words "Volume: front-left: 52428 /  80% / -5.81 dB, ...": the loudest channel's.
std::optional<int> ParseVolume(const QByteArray& words);

}  // namespace Kivora
