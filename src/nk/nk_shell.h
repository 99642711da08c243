// Opening a file or an address with the desktop's program for it.
#pragma once

#include "nk/nk_string.h"

namespace NK {

/// Hands a path or an address such as "https://..." to the desktop, without a shell in between. False when the
/// desktop's opener is missing or reports a failure. Waits for its result, at most 3 s: one that is still busy then has
/// found a program and counts as a success. [any], but not for a thread that must not wait.
bool OpenWithShell(const CString& target);

}  // namespace NK
