// Sleeping, as something that a test can replace.
#pragma once

#include <cstdint>

namespace NK {

class CWakeup;

/// Whoever sleeps takes one of these, so that a test moves its own clock instead of waiting.
class CSleeper {
public:
    virtual ~CSleeper() = default;
    /// Sleeps `milliseconds`; a signal does not shorten it. [any]
    virtual void Sleep(std::uint32_t milliseconds) = 0;
    /// Waits until `wakeup` is woken or its clock has come to `untilNs`; may return earlier. Here it sleeps one
    /// millisecond unless woken, so that whoever moves a clock by sleeping moves it by waiting too.
    virtual void Wait(CWakeup& wakeup, std::int64_t untilNs);
};

/// The operating system's sleep; one shared object for the process.
CSleeper& SystemSleeper();

}  // namespace NK
