// Songs made by hand, and the engine that plays them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "engine/Song.h"
#include "engine/SongPlayer.h"
#include "unit/engine/EngineRig.h"

namespace KivoraTest {

struct TimedMessage {
    int ms;
    NK::MIDI::TMIDIMessage message;
};

/// A song of these messages, in the order of their times; as long as `lengthMs` if they are not longer.
inline std::shared_ptr<const Kivora::Song> MakeSong(std::vector<TimedMessage> messages, int lengthMs = 0) {
    std::stable_sort(messages.begin(), messages.end(), [](const auto& a, const auto& b) { return a.ms < b.ms; });
    NK::MIDI::SMFContent content;
    content.lengthUs = std::int64_t{lengthMs} * 1000;
    for (const TimedMessage& timed : messages) {
        content.events.push_back(
            {std::int64_t{timed.ms} * 1000, static_cast<std::uint32_t>(timed.ms), 0, timed.message});
    }
    return std::make_shared<const Kivora::Song>(std::move(content));
}

}  // namespace KivoraTest
