// Sleeping, as something that a test can replace.
#pragma once

#include <cstdint>

namespace NK {

/// Whoever sleeps takes one of these, so that a test moves its own clock instead of waiting.
class CSleeper {
public:
    virtual ~CSleeper() = default;
    /// Sleeps `milliseconds`; a signal does not shorten it. [any]
    virtual void Sleep(std::uint32_t milliseconds) = 0;
};

/// The operating system's sleep; one shared object for the process.
CSleeper& SystemSleeper();

}  // namespace NK
