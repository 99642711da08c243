#include "libmidi/PlayedHistory.h"

#include <algorithm>

namespace LibMidi {

using NK::MIDI::TMIDIMessage;

namespace {
/// Copied under one hold of the lock.
constexpr std::uint64_t kPiece = 4096;
}  // namespace

void PlayedHistory::SetOn(bool on) {
    if (on == IsOn()) {
        return;
    }
    // Without a value: the pages of what is not used stay untouched.
    std::unique_ptr<PlayedEvent[]> ring = on ? std::make_unique_for_overwrite<PlayedEvent[]>(capacity_) : nullptr;
    const CLockGuard guard(lock_);
    if (on == (ring_ != nullptr)) {
        return;
    }
    std::swap(ring, ring_);
    end_ = 0;
    dropped_ = {};
}

bool PlayedHistory::IsOn() const {
    const CLockGuard guard(lock_);
    return ring_ != nullptr;
}

void PlayedHistory::SetTimeSource(NK::CTimeSource* source) {
    const CLockGuard guard(lock_);
    clock_.SetSource(source);
}

std::int64_t PlayedHistory::GetTimeMs() const {
    const CLockGuard guard(lock_);
    return clock_.GetElapsedMs();
}

void PlayedHistory::Append(TMIDIMessage message) {
    if (message.status >= TMIDIMessage::kFirstSystemStatus && message.status != TMIDIMessage::kSystemReset) {
        return;
    }
    const CLockGuard guard(lock_);
    if (!ring_) {
        return;
    }
    PlayedEvent& place = ring_[end_ % capacity_];
    if (end_ >= capacity_) {
        dropped_.Follow(place.message);
    }
    place = {clock_.GetElapsedMs(), message};
    ++end_;
}

PlayedHistory::Content PlayedHistory::Get() const {
    Content content;
    std::vector<PlayedEvent> piece;
    piece.reserve(kPiece);
    std::uint64_t copied = 0;
    for (bool isDone = false, isBegun = false; !isDone;) {
        piece.clear();
        {
            const CLockGuard guard(lock_);
            if (!isBegun || copied < GetFirst() || copied > end_) {  // overwritten or forgotten meanwhile
                isBegun = true;
                copied = GetFirst();
                content.before = dropped_;
                content.events.clear();
            }
            for (const std::uint64_t pieceEnd = std::min(end_, copied + kPiece); copied < pieceEnd; ++copied) {
                piece.push_back(ring_[copied % capacity_]);
            }
            content.nowMs = clock_.GetElapsedMs();
            isDone = copied == end_;
        }
        content.events.insert(content.events.end(), piece.begin(), piece.end());
    }
    const auto kept = std::find_if(content.events.begin(), content.events.end(),
                                   [&](const PlayedEvent& event) { return event.timeMs >= content.nowMs - kKeptMs; });
    std::for_each(content.events.begin(), kept,
                  [&content](const PlayedEvent& event) { content.before.Follow(event.message); });
    content.events.erase(content.events.begin(), kept);
    return content;
}

}  // namespace LibMidi
