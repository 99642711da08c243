// What becomes of a file that could not be read. [any]
#pragma once

#include "nk/nk_ini_file.h"
#include "nk/nk_string.h"

namespace NK {

/// Renames the file at `path` with ".bad" added (".bad2" and so on where that name is taken) and returns its new name;
/// empty when it cannot be renamed.
CString SetFileAside(const CString& path);

/// Renames the file at `path` with ".bad" added (".bad2" and so on where that name is taken), so that what it holds is
/// not lost, then saves. `setAside` is the new name. False, the file as it was and `setAside` empty, when it cannot be
/// renamed or the saving fails.
bool SaveOverDamaged(CIniFile& file, const CString& path, CString& setAside);

}  // namespace NK
