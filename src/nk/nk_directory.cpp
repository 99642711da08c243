#include "nk/nk_directory.h"

#include <cerrno>
#include <new>

#include "nk/nk_file_failure.h"
#include "nk/platform/platform_files.h"

namespace NK {

namespace {

bool Report(const CString& path, bool done) {
    if (!done) {
        SetFileFailure(path, errno);
    }
    return done;
}

}  // namespace

bool ListFiles(const CString& folder, CStringArray& names) {
    names.Clear();
    try {
        if (Report(folder, Platform::ListFiles(folder, names))) {
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
    int error = 0;
    const auto create = [&error](const CString& folder) {
        const bool created = Platform::CreateFolder(folder);
        // What keeps a parent from being made is the reason for the rest.
        if (!created && error == 0 && errno != EEXIST) {
            error = errno;
        }
        return created;
    };
    for (std::uint32_t end = 1; end < path.GetLength(); ++end) {
        if (path[end] == L'/') {
            static_cast<void>(create(path.Left(end)));
        }
    }
    if (create(path) || FolderExists(path)) {
        return true;
    }
    SetFileFailure(path, error != 0 ? error : EEXIST);
    return false;
}

bool RemoveFile(const CString& path) {
    return Report(path, Platform::RemoveFile(path));
}

bool RenameFile(const CString& from, const CString& to) {
    return Report(from, Platform::RenamePath(from, to));
}

}  // namespace NK
