// Folders and what stands in them. What is false for a failure has its reason in GetFileFailure(). [any]
#pragma once

#include "nk/nk_string.h"

namespace NK {

/// Lists the files of a folder over "*.*": every file, whether its name has a dot or not, no folders; links to files
/// count. `names` holds their names without the folder, in the system's order. False, the list empty, when the folder
/// cannot be read. Throws CException "Out of memory." when the list cannot grow.
bool ListFiles(const CString& folder, CStringArray& names);

bool FileExists(const CString& path);
bool FolderExists(const CString& path);
/// With any missing parents, permission bits 0755; true as well when the folder stands there already.
bool CreateFolder(const CString& path);
/// False when there is no such file, and for a folder.
bool RemoveFile(const CString& path);
/// Replaces a file that has the new name.
bool RenameFile(const CString& from, const CString& to);

}  // namespace NK
