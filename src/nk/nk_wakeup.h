// How one thread wakes another that waits.
#pragma once

#include <atomic>
#include <cstdint>

namespace NK {

/// One thread waits on it, any thread wakes it. A wake-up that comes while nobody waits ends the next wait at once, and
/// several count as one: who is woken looks at what has changed. Waking takes no lock, and nothing of the system unless
/// somebody waits.
class CWakeup {
public:
    static constexpr std::int64_t kNever = INT64_MAX;

    CWakeup() = default;
    CWakeup(const CWakeup&) = delete;
    CWakeup& operator=(const CWakeup&) = delete;

    void Wake() noexcept;  ///< [any]
    /// Returns when woken, at `untilNs` of the clock below, or for no reason.
    void WaitUntil(std::int64_t untilNs) noexcept;
    /// Takes a wake-up that has come; false when there is none.
    bool Take() noexcept;

    /// Nanoseconds of the clock that the system's waits are measured by; nobody sets it. [any]
    static std::int64_t NowNs() noexcept;

private:
    enum State : std::uint32_t { kIdle, kWaiting, kWoken };
    std::atomic<std::uint32_t> state_{kIdle};
};

}  // namespace NK
