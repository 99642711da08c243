// The system's folders for users and programs. [any]
#pragma once

#include "nk/nk_string.h"

namespace NK::Platform {

/// $XDG_DATA_HOME when it is an absolute path, else ".local/share" in the user's home folder (XDG Base Directory
/// Specification 0.8). No slash at the end.
CString GetUserDataBaseFolder();
/// $XDG_RUNTIME_DIR when it is an absolute path, else empty; inside a Flatpak its folder "app" and the application's
/// name in that, which the sandboxes of an application share. No slash at the end.
CString GetRuntimeBaseFolder();
/// Full path of the running program, links followed; empty when the system does not tell.
CString GetExecutablePath();

}  // namespace NK::Platform
