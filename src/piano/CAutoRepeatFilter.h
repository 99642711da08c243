// Tells the presses and releases of a key from the system's auto-repeat.
#pragma once

#include <cstdint>
#include <optional>

namespace NK::Piano {

/// The repeat flag of a key event is unreliable on X11, where a held key repeats as a release and a press with one time
/// stamp. So an unflagged release waits: a press of the same key with the same time stamp makes both a repeat; any
/// other event, or kSettleMs without one, makes it a release. At most one release waits. [gui]
class CAutoRepeatFilter {
public:
    /// Both events of a repeat are sent together, but may be read apart.
    static constexpr int kSettleMs = 10;

    enum class EVerdict {
        kPlay,    ///< a press or release of the key itself; a release that waited comes before it
        kRepeat,  ///< to be ignored; a release of the same key that waited is void
        kWait,    ///< a release whose verdict is not known yet; one that waited before comes before it
    };

    /// The native scan code and the event's time in ms; 0 is unknown, and events with an unknown scan code or time are
    /// judged by the flag alone.
    EVerdict Press(std::uint32_t scanCode, std::uint64_t timeMs, bool autoRepeat) noexcept;
    EVerdict Release(std::uint32_t scanCode, std::uint64_t timeMs, bool autoRepeat) noexcept;

    bool IsWaiting() const noexcept { return waiting_.has_value(); }
    /// The caller has carried out the waiting release, or dropped it.
    void Settle() noexcept { waiting_.reset(); }

private:
    struct TWaiting {
        std::uint32_t scanCode;
        std::uint64_t timeMs;
    };
    std::optional<TWaiting> waiting_;
};

}  // namespace NK::Piano
