#include "nk/nk_atomic_save.h"

#include <cerrno>
#include <mutex>
#include <new>
#include <set>
#include <string>

#include "nk/nk_disk_file.h"
#include "nk/nk_file_failure.h"
#include "nk/nk_paths.h"
#include "nk/platform/platform_files.h"

namespace NK {

namespace {

/// Remembers writes that were cut short, for writers that do not look.
class CWatchedFile : public CDiskFile {
public:
    using CDiskFile::CDiskFile;

    std::size_t Write(const void* buffer, std::size_t elementSize, std::size_t count) override {
        const std::size_t written = CDiskFile::Write(buffer, elementSize, count);
        if (error_ == 0 && written != count && elementSize != 0) {
            error_ = errno;
        }
        return written;
    }
    /// The system's number for the first write that was cut short; 0 for none.
    int GetError() const { return error_; }

private:
    int error_ = 0;
};

/// Removes the file at the end of the scope unless it was kept.
class CTemporaryName {
public:
    explicit CTemporaryName(CString path) : path_(std::move(path)) {}
    ~CTemporaryName() {
        if (path_.IsEmpty()) {
            return;
        }
        try {
            Platform::RemoveFile(path_);
        } catch (const std::bad_alloc&) {
            // A save of a later day removes it.
        }
    }
    CTemporaryName(const CTemporaryName&) = delete;
    CTemporaryName& operator=(const CTemporaryName&) = delete;

    const CString& GetPath() const { return path_; }
    bool RenameTo(const CString& target) {
        if (!Platform::RenamePath(path_, target)) {
            return false;
        }
        path_.Clear();
        return true;
    }

private:
    CString path_;
};

/// Once for each folder.
void CleanUpFolderOf(const CString& target) {
    static std::mutex mutex;
    static std::set<std::wstring> cleaned;
    const std::lock_guard guard(mutex);
    if (cleaned.emplace(GetFolderName(target).View()).second) {
        Platform::RemoveAbandonedBeside(target);
    }
}

/// Returns the error number that kept the file from being saved, or one of nk_file_failure.h; 0 when it is saved. So
/// does the writer.
int Save(const CString& path, const std::function<int(const CString& temporaryPath)>& write) {
    if (path.IsEmpty()) {
        return kErrorUnknown;
    }
    const CString target = Platform::ResolveLinks(path);
    errno = 0;
    const Platform::PathKind kind = Platform::GetPathKind(target);
    if (kind != Platform::PathKind::kFile && kind != Platform::PathKind::kAbsent) {
        return kind == Platform::PathKind::kUnknown ? errno : kErrorNoRegularFile;
    }
    CleanUpFolderOf(target);
    CTemporaryName temporary(Platform::CreateFileBeside(target));
    if (temporary.GetPath().IsEmpty()) {
        return errno;
    }
    if (const int error = write(temporary.GetPath())) {
        return error;
    }
    if (!Platform::FlushFileToDisk(temporary.GetPath()) || !temporary.RenameTo(target)) {
        return errno;
    }
    try {
        static_cast<void>(Platform::FlushFolderOf(target));
    } catch (const std::bad_alloc&) {
        // The new file is in place; a folder that cannot be flushed makes it no less whole.
    }
    return 0;
}

bool Finish(const CString& path, int error) {
    if (error != 0) {
        SetFileFailure(path, error);
    }
    return error == 0;
}

}  // namespace

bool SaveAtomicallyByName(const CString& path, const std::function<bool(const CString& temporaryPath)>& write) {
    return Finish(
        path, Save(path, [&write](const CString& temporaryPath) { return write(temporaryPath) ? 0 : kErrorUnknown; }));
}

bool SaveAtomically(const CString& path, const std::function<bool(CFile& file)>& write) {
    return Finish(path, Save(path, [&write](const CString& temporaryPath) {
                      CWatchedFile file(temporaryPath, CDiskFile::kWrite, 0664);
                      if (!file.IsOpen()) {
                          return GetFileFailure().error;
                      }
                      const bool written = write(file);
                      const int closing = file.Close() == 0 ? 0 : errno;
                      return file.GetError() != 0 ? file.GetError() : !written ? kErrorUnknown : closing;
                  }));
}

}  // namespace NK
