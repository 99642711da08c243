// Why a file could not be read or written.
#pragma once

#include "nk/nk_string.h"

namespace NK {

/// An error number of the system (positive), or one of these.
inline constexpr int kErrorNoRegularFile = -1;
inline constexpr int kErrorTooLarge = -2;  ///< larger than what reads it takes
inline constexpr int kErrorUnknown = -3;   ///< for which there are no words

struct FileFailure {
    CString path;   ///< empty: no file has failed
    int error = 0;  ///< 0: none
};

/// Of the calling thread's operations on named files the one that failed last, since ForgetFileFailure(). An operation
/// that succeeds leaves it. A path is cut after 4,095 characters. Who reports a failure to the user forgets before the
/// attempt, and asks after it. [any]
FileFailure GetFileFailure();
void ForgetFileFailure() noexcept;
/// For who carries out an operation on a file. [any]
void SetFileFailure(const CString& path, int error) noexcept;

/// In the program's language, else in the system's; empty for 0 and kErrorUnknown. Without a full stop. [any]
CString DescribeFileError(int error);

}  // namespace NK
