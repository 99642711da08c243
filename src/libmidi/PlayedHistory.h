// What was played last, kept in memory.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "libmidi/CaptureClock.h"
#include "libmidi/ChannelState.h"
#include "midi/TMIDIMessage.h"
#include "nk/nk_critical_section.h"
#include "nk/nk_time_source.h"

namespace LibMidi {

/// A channel message, or a system reset, that was played, and when: milliseconds by the history's clock.
struct PlayedEvent {
    std::int64_t timeMs;
    NK::MIDI::TMIDIMessage message;
};

/// A ring of fixed size, which the queues of the players fill: it outlives each of them. Memory is taken when it is
/// switched on, and appending allocates nothing. [any]
class PlayedHistory {
public:
    static constexpr std::int64_t kKeptMs = std::int64_t{15} * 60 * 1000;
    static constexpr std::uint32_t kCapacity = 1'000'000;  ///< 16 MB
    static_assert(sizeof(PlayedEvent) == 16);

    explicit PlayedHistory(std::uint32_t capacity = kCapacity) : capacity_(capacity) {}
    PlayedHistory(const PlayedHistory&) = delete;
    PlayedHistory& operator=(const PlayedHistory&) = delete;

    /// Off at first. Off forgets everything and gives the memory back.
    void SetOn(bool on);
    bool IsOn() const;
    /// As CaptureClock::SetSource().
    void SetTimeSource(NK::CTimeSource* source);

    /// Milliseconds by its clock.
    std::int64_t GetTimeMs() const;
    /// Nothing while it is off, and for other system messages.
    void Append(NK::MIDI::TMIDIMessage message);

    struct Content {
        ChannelState before;              ///< what stood when the first of them was played
        std::vector<PlayedEvent> events;  ///< of the last kKeptMs, the oldest first
        std::int64_t nowMs = 0;
    };
    /// Whoever plays waits for a few microseconds at a time meanwhile.
    Content Get() const;

private:
    const std::uint32_t capacity_;
    mutable CCriticalSection lock_;
    mutable CaptureClock clock_ NK_GUARDED_BY(lock_);
    std::unique_ptr<PlayedEvent[]> ring_ NK_GUARDED_BY(lock_);  ///< null while it is off
    std::uint64_t end_ NK_GUARDED_BY(lock_) = 0;                ///< how many were appended
    ChannelState dropped_ NK_GUARDED_BY(lock_);                 ///< what the overwritten ones have set

    std::uint64_t GetFirst() const NK_REQUIRES(lock_) { return end_ > capacity_ ? end_ - capacity_ : 0; }
};

}  // namespace LibMidi
