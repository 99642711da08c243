// Where the user's data and the program's own files stand. [any]
#pragma once

#include "nk/nk_string.h"

namespace NK {

/// The user's application-data folder: $XDG_DATA_HOME when it is an absolute path, else ~/.local/share. No slash at the
/// end; not created.
CString GetUserDataBaseDir();
/// GetUserDataBaseDir(), then the maker's folder, then the product's. Not created.
CString ComposeUserDataDir(const CString& maker, const CString& product);
/// Where this user's running programs of one name meet: a folder of the program's own in $XDG_RUNTIME_DIR, in a Flatpak
/// in the part of it that is the application's. Not created; empty when the system has no such place.
CString GetMeetingDir(const CString& product);
/// The folder of the running program, links followed, no slash at the end; empty when the system does not tell.
CString GetExecutableDir();

/// One "/" between the two, whether `folder` ends in one or not; an empty folder gives the name alone.
CString JoinPath(const CString& folder, const CString& name);
/// What follows the last "/".
CString GetFileName(const CString& path);
/// What precedes the last "/"; empty without one, "/" for a name in the root.
CString GetFolderName(const CString& path);
/// What follows the last "." of the file name, and the file name without that; a dot that begins the name begins no
/// extension.
CString GetFileExtension(const CString& path);
CString GetFileStem(const CString& path);

}  // namespace NK
