#include "nk/nk_atomic_save.h"

#include <mutex>
#include <set>
#include <string>

#include "nk/nk_disk_file.h"
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
        failed_ = failed_ || (written != count && elementSize != 0);
        return written;
    }
    bool HasFailed() const { return failed_; }

private:
    bool failed_ = false;
};

/// Removes the file at the end of the scope unless it was kept.
class CTemporaryName {
public:
    explicit CTemporaryName(CString path) : path_(std::move(path)) {}
    ~CTemporaryName() {
        if (!path_.IsEmpty()) {
            Platform::RemoveFile(path_);
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

}  // namespace

bool SaveAtomicallyByName(const CString& path, const std::function<bool(const CString& temporaryPath)>& write) {
    if (path.IsEmpty()) {
        return false;
    }
    const CString target = Platform::ResolveLinks(path);
    const Platform::PathKind kind = Platform::GetPathKind(target);
    if (kind != Platform::PathKind::kFile && kind != Platform::PathKind::kAbsent) {
        return false;
    }
    CleanUpFolderOf(target);
    CTemporaryName temporary(Platform::CreateFileBeside(target));
    if (temporary.GetPath().IsEmpty() || !write(temporary.GetPath()) ||
        !Platform::FlushFileToDisk(temporary.GetPath()) || !temporary.RenameTo(target)) {
        return false;
    }
    // The new file is in place; a folder that cannot be flushed makes it no less whole.
    static_cast<void>(Platform::FlushFolderOf(target));
    return true;
}

bool SaveAtomically(const CString& path, const std::function<bool(CFile& file)>& write) {
    return SaveAtomicallyByName(path, [&write](const CString& temporaryPath) {
        CWatchedFile file(temporaryPath, CDiskFile::kWrite, 0664);
        const bool written = file.IsOpen() && write(file) && !file.HasFailed();
        return file.Close() == 0 && written;
    });
}

}  // namespace NK
