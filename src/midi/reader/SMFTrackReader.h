// Reading one track of a Standard MIDI File. [owner]
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "midi/reader/ByteCursor.h"
#include "midi/reader/SMFContent.h"

namespace NK::MIDI {

/// Appends what a track holds to lists whose times are not known yet.
class SMFTrackReader {
public:
    struct Lists {
        SMFContent& content;
        std::vector<TempoMap::Change>& tempi;
    };

    SMFTrackReader(ByteCursor bytes, std::uint16_t track, Lists lists) : bytes_(bytes), track_(track), lists_(lists) {}

    /// Up to the end of the track or to the damage, which goes into the content where it is the first.
    void Read();
    /// Of the track's end.
    std::uint32_t GetTick() const noexcept { return tick_; }

private:
    bool Fail(SMFDefect defect) { return Fail(defect, bytes_.GetOffset()); }
    bool Fail(SMFDefect defect, std::int64_t offset);
    /// Of these, those that are false have found damage.
    std::optional<std::uint32_t> ReadQuantity();
    bool ReadDeltaTime();
    bool ReadEvent();
    bool ReadChannelMessage(std::uint8_t status);
    bool ReadMeta();
    bool SkipSystemExclusive();
    bool TakeTempo(std::string_view data, std::int64_t offset);
    void TakeText(std::uint8_t type, std::string_view data);

    ByteCursor bytes_;
    const std::uint16_t track_;
    const Lists lists_;
    std::uint32_t tick_ = 0;
    std::uint8_t runningStatus_ = 0;  ///< 0: none yet
    bool isEnded_ = false;
};

}  // namespace NK::MIDI
