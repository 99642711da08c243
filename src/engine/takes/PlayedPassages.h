// Takes out of what was played last. [any]
#pragma once

#include <cstdint>
#include <optional>

#include "engine/takes/PlayedGrid.h"
#include "libmidi/CaptureStore.h"
#include "libmidi/PlayedHistory.h"
#include "nk/nk_string.h"

namespace Kivora {

/// What somebody may want to save who forgot to record: all that is kept, from its first note on, or what follows the
/// last pause. A pause is kPauseMs in which no note began, ended or sounded, and a note begins after it. Immutable;
/// holds the events that it was made of.
class PlayedPassages {
public:
    static constexpr std::int64_t kPauseMs = 10000;

    enum class Range { kAll, kSincePause };

    explicit PlayedPassages(LibMidi::PlayedHistory::Content content, PlayedGrid grid = {});

    /// Whether any note began.
    bool IsAny() const { return !starts_.empty(); }
    bool HasPause() const { return starts_.size() > 1; }
    /// The rest is for passages of which there is any. From the first note to its last event, ms.
    int GetLengthMs(Range range) const;
    /// How long ago its first note began, ms.
    std::int64_t GetAgeMs(Range range) const;
    /// As a take: the state of the channels before its first note stands at 0, what a reset of the synthesizer sets
    /// back is set back, and what is held is ended at the moment when the content was taken.
    LibMidi::CaptureStore::View GetTake(Range range) const;
    /// Writes it as recordings are written, on the grid where that is wanted and known. False when the file could not
    /// be written: then an older one of that name is as it was.
    bool Save(Range range, const NK::CString& path, bool onGrid = false) const;

private:
    std::size_t GetStart(Range range) const { return range == Range::kAll ? starts_.front() : starts_.back(); }

    const LibMidi::PlayedHistory::Content content_;
    const PlayedGrid grid_;
    std::size_t end_ = 0;              ///< behind the last event that sounds: what was set after it is no part
    std::vector<std::size_t> starts_;  ///< of the first event, and of the one after the last pause if there is one
};

}  // namespace Kivora
