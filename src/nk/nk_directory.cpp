#include "nk/nk_directory.h"

#include <new>

#include "nk/platform/platform_files.h"

namespace NK {

bool ListFiles(const CString& folder, CStringArray& names) {
    names.Clear();
    try {
        if (Platform::ListFiles(folder, names)) {
            return true;
        }
    } catch (const CMemoryException&) {
        throw CException(L"Out of memory.");
    } catch (const std::bad_alloc&) {
        throw CException(L"Out of memory.");
    }
    names.Clear();
    return false;
}

bool FileExists(const CString& path) {
    return Platform::GetPathKind(path) == Platform::PathKind::kFile;
}

bool FolderExists(const CString& path) {
    return Platform::GetPathKind(path) == Platform::PathKind::kFolder;
}

bool CreateFolder(const CString& path) {
    for (std::uint32_t end = 1; end < path.GetLength(); ++end) {
        if (path[end] == L'/') {
            // A parent that cannot be created shows in the last step.
            static_cast<void>(Platform::CreateFolder(path.Left(end)));
        }
    }
    return Platform::CreateFolder(path) || FolderExists(path);
}

bool RemoveFile(const CString& path) {
    return Platform::RemoveFile(path);
}

bool RenameFile(const CString& from, const CString& to) {
    return Platform::RenamePath(from, to);
}

}  // namespace NK
