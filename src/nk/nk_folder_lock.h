// The right to change something in a folder, among programs.
#pragma once

#include <cstdint>
#include <memory>

#include "nk/nk_sleep.h"
#include "nk/nk_string.h"

namespace NK {

/// Held by one owner at a time among all that take it, until it is destroyed or its program ends. Nothing is left in
/// the folder, and whoever does not take it is not kept out.
class CFolderLock {
public:
    /// How long another owner is waited for, at most.
    static constexpr std::uint32_t kLimitMs = 500;

    /// Null when the folder cannot be opened, or another owner does not let go of it in time. [any]
    static std::unique_ptr<CFolderLock> Take(const CString& folder, CSleeper& sleeper = SystemSleeper());
    ~CFolderLock();
    CFolderLock(const CFolderLock&) = delete;
    CFolderLock& operator=(const CFolderLock&) = delete;

private:
    explicit CFolderLock(int descriptor) : descriptor_(descriptor) {}

    const int descriptor_;
};

}  // namespace NK
