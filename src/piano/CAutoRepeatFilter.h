// Tells the presses and releases of a key from the system's auto-repeat.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>

namespace NK::Piano {

/// What a key event turned out to be.
enum class EKeyVerdict {
    kPlay,    ///< a press or release of the key itself
    kRepeat,  ///< to be ignored
    kWait,    ///< a release that is not judged yet
};

/// Both events of a repeat are sent together, but may be read apart: how long a release waits for its press, in ms.
inline constexpr int kRepeatSettleMs = 10;

/// The repeat flag of a key event is unreliable on X11, where a held key repeats as a release and a press with one time
/// stamp. So an unflagged release waits: a press of the same key with the same time stamp makes both a repeat; any
/// other event, or kRepeatSettleMs without one, makes it a release. At most one release waits, as a copy of TEvent.
/// Before it carries out any event, the caller takes the one that waits and carries that out. [gui]
///
/// Scan codes are native, times are the events' in ms; 0 is unknown, and events with an unknown scan code or time are
/// judged by the flag alone.
template <class TEvent>
class CAutoRepeatFilter {
public:
    EKeyVerdict Press(std::uint32_t scanCode, std::uint64_t timeMs, bool autoRepeat) {
        const bool pairs = waiting_ && waiting_->scanCode == scanCode && (autoRepeat || waiting_->timeMs == timeMs);
        if (pairs) {
            waiting_.reset();
        }
        const bool isLate = IsLate(scanCode, timeMs);
        up_.reset();
        return pairs || isLate || autoRepeat ? EKeyVerdict::kRepeat : EKeyVerdict::kPlay;
    }

    /// To be called with nothing waiting.
    EKeyVerdict Release(std::uint32_t scanCode, std::uint64_t timeMs, bool autoRepeat, const TEvent& event) {
        if (autoRepeat) {
            return EKeyVerdict::kRepeat;
        }
        if (scanCode == 0 || timeMs == 0) {
            return EKeyVerdict::kPlay;
        }
        up_.reset();
        waiting_.emplace(TWaiting{scanCode, timeMs, event});
        return EKeyVerdict::kWait;
    }

    /// Whether Press() would find the press of a repeat whose release was taken by TakeWaitingOfUp(): the release that
    /// follows ends nothing more.
    bool IsLate(std::uint32_t scanCode, std::uint64_t timeMs) const { return up_ == TStamp{scanCode, timeMs}; }

    /// The key is known to be down when that press comes: then it was struck again, within the same ms.
    void TakeAsStruck() { up_.reset(); }

    bool IsWaiting() const noexcept { return waiting_.has_value(); }

    /// The release that waits, which is one now; nothing when none waits.
    std::optional<TEvent> TakeWaiting() {
        std::optional<TEvent> event;
        if (waiting_) {
            event = std::move(waiting_->event);
            waiting_.reset();
        }
        return event;
    }

    /// The same where the key is known to be up, and the press of a repeat may still come.
    std::optional<TEvent> TakeWaitingOfUp() {
        if (waiting_) {
            up_ = TStamp{waiting_->scanCode, waiting_->timeMs};
        }
        return TakeWaiting();
    }

private:
    struct TStamp {
        std::uint32_t scanCode;
        std::uint64_t timeMs;
        friend bool operator==(const TStamp&, const TStamp&) = default;
    };
    struct TWaiting {
        std::uint32_t scanCode;
        std::uint64_t timeMs;
        TEvent event;
    };
    std::optional<TWaiting> waiting_;
    std::optional<TStamp> up_;  ///< of the release that was taken last
};

}  // namespace NK::Piano
