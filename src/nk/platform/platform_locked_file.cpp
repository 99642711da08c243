#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "nk/nk_file_failure.h"
#include "nk/nk_locked_file.h"
#include "nk/platform/platform_files.h"

namespace NK {

namespace {

/// Whether nobody else holds the file and its name still stands in the folder: before the lock was got, another owner
/// may have held, and removed, it. Neither is a failure.
bool TakeHold(int descriptor, const CString& path) {
    int result = 0;
    do {
        result = flock(descriptor, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0 && errno == EWOULDBLOCK) {
        return false;
    }
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        SetFileFailure(path, errno);
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        SetFileFailure(path, kErrorNoRegularFile);
        return false;
    }
    return status.st_nlink > 0;
}

/// The open file if it can be held, else -1.
int Open(const CString& path, int flags) {
    const int descriptor = open(path.ToUtf8().c_str(), O_RDWR | Platform::GetOpenFlags() | flags, 0664);
    if (descriptor < 0) {
        SetFileFailure(path, errno);
    }
    if (descriptor >= 0 && !TakeHold(descriptor, path)) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

}  // namespace

CLockedFile::CLockedFile(int descriptor, CString path) : descriptor_(descriptor), path_(std::move(path)) {
}

CLockedFile::~CLockedFile() {
    close(descriptor_);
}

std::unique_ptr<CLockedFile> CLockedFile::Create(const CString& path) {
    const int descriptor = Open(path, O_CREAT | O_EXCL);
    if (descriptor < 0) {
        return nullptr;
    }
    static_cast<void>(Platform::FlushFolderOf(path));
    return std::unique_ptr<CLockedFile>(new CLockedFile(descriptor, path));
}

std::unique_ptr<CLockedFile> CLockedFile::Claim(const CString& path) {
    const int descriptor = Open(path, O_NOFOLLOW);
    return descriptor < 0 ? nullptr : std::unique_ptr<CLockedFile>(new CLockedFile(descriptor, path));
}

bool CLockedFile::WriteAt(std::int64_t offset, const void* bytes, std::size_t size) {
    const char* rest = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t written = pwrite(descriptor_, rest, size, offset);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            SetFileFailure(path_, written < 0 ? errno : kErrorUnknown);
            return false;
        }
        rest += written;
        offset += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool CLockedFile::Flush() {
    if (fdatasync(descriptor_) != 0) {
        SetFileFailure(path_, errno);
        return false;
    }
    return true;
}

bool CLockedFile::Remove() {
    if (unlink(path_.ToUtf8().c_str()) != 0) {
        return false;
    }
    static_cast<void>(Platform::FlushFolderOf(path_));
    return true;
}

}  // namespace NK
