#include "nk/platform/platform_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "nk/nk_file_failure.h"

namespace NK::Platform {

namespace {

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

PathKind KindOf(const char* path) {
    struct stat status {};
    if (stat(path, &status) != 0) {
        return errno == ENOENT || errno == ENOTDIR ? PathKind::kAbsent : PathKind::kUnknown;
    }
    return S_ISREG(status.st_mode) ? PathKind::kFile : S_ISDIR(status.st_mode) ? PathKind::kFolder : PathKind::kOther;
}

constexpr unsigned kMemoryDevices = 1;  // Linux's list of devices: null, zero, full and their like

bool NeverKeepsWaiting(const struct stat& status) {
    return S_ISREG(status.st_mode) || (S_ISCHR(status.st_mode) && major(status.st_rdev) == kMemoryDevices);
}

/// For a mode of the C library; nothing for any other text.
std::optional<int> FlagsOf(std::string_view mode) {
    if (mode.empty()) {
        return std::nullopt;
    }
    const bool updates = mode.find('+') != std::string_view::npos;
    switch (mode.front()) {
        case 'r':
            return updates ? O_RDWR : O_RDONLY;
        case 'w':
            return (updates ? O_RDWR : O_WRONLY) | O_CREAT | O_TRUNC;
        case 'a':
            return (updates ? O_RDWR : O_WRONLY) | O_CREAT | O_APPEND;
        default:
            return std::nullopt;
    }
}

bool FlushToDisk(const char* path, int flags) {
    const int descriptor = open(path, flags | GetOpenFlags());
    if (descriptor < 0) {
        return false;
    }
    const bool flushed = fsync(descriptor) == 0;
    close(descriptor);
    return flushed;
}

// The name of a temporary file: the maker's process number and the count of the files that it has made are between.
constexpr std::string_view kTemporaryBegin = ".saving-";
constexpr std::string_view kTemporaryEnd = ".tmp";

/// Takes a whole number, digits only, from the front of the text.
template <class Number>
std::optional<Number> TakeNumber(std::string_view& text) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || text.front() == '-') {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// The process that has made a temporary file of that name; nothing for any other name.
std::optional<pid_t> MakerOfTemporary(std::string_view name) {
    if (!name.starts_with(kTemporaryBegin)) {
        return std::nullopt;
    }
    name.remove_prefix(kTemporaryBegin.size());
    const std::optional<pid_t> maker = TakeNumber<pid_t>(name);
    if (!maker || *maker == 0 || !name.starts_with('-')) {
        return std::nullopt;
    }
    name.remove_prefix(1);
    return TakeNumber<unsigned>(name) && name == kTemporaryEnd ? maker : std::nullopt;
}

/// Another process than this one: nothing that this one writes is as old as an abandoned file.
bool IsOtherProcessAlive(pid_t process) {
    return process != getpid() && (kill(process, 0) == 0 || errno != ESRCH);
}

}  // namespace

PathKind GetPathKind(const CString& path) {
    return KindOf(path.ToUtf8().c_str());
}

int GetOpenFlags() {
    return O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
}

std::FILE* OpenFile(const CString& path, const wchar_t* mode) {
    const std::string modeText = CString(mode).ToLatin1();
    const std::optional<int> flags = FlagsOf(modeText);
    const std::string name = path.ToUtf8();
    // What can be known to keep somebody waiting is not even opened: a device may act on that.
    struct stat status {};
    const bool isThere = stat(name.c_str(), &status) == 0;
    if (!flags || (isThere && !NeverKeepsWaiting(status))) {
        SetFileFailure(path, flags ? kErrorNoRegularFile : EINVAL);
        return nullptr;
    }
    const int descriptor = open(name.c_str(), *flags | GetOpenFlags(), 0666);
    if (descriptor < 0) {
        SetFileFailure(path, errno);
        return nullptr;
    }
    const bool fits = fstat(descriptor, &status) == 0 && NeverKeepsWaiting(status);
    std::FILE* const stream = fits ? fdopen(descriptor, modeText.c_str()) : nullptr;
    if (stream == nullptr) {
        SetFileFailure(path, fits ? errno : kErrorNoRegularFile);
        close(descriptor);
    }
    return stream;
}

const char* GetErrorText(int error) {
    return strerrordesc_np(error);
}

const char* GetLocalErrorText(int error) {
    return std::strerror(error);
}

int SeekFile(std::FILE* stream, std::int64_t offset, int origin) {
    return fseeko(stream, offset, origin);
}

std::int64_t TellFile(std::FILE* stream) {
    return ftello(stream);
}

CString CreateFileBeside(const CString& path) {
    static std::atomic<unsigned> counter{0};
    constexpr int kAttempts = 100;
    const std::string target = path.ToUtf8();
    struct stat status {};
    const bool replaces = stat(target.c_str(), &status) == 0;
    if (replaces && access(target.c_str(), W_OK) != 0) {
        return CString();
    }
    const std::string begin = FolderOf(target) + "/" + std::string(kTemporaryBegin) + std::to_string(getpid()) + "-";
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        // A name of its own length, so that a target with the longest name that a folder takes can be saved too.
        const std::string name = begin + std::to_string(counter++).append(kTemporaryEnd);
        // Before the file is there: without memory for its name nobody could remove it.
        CString answer = CString::FromUtf8(name);
        const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | GetOpenFlags(), 0664);
        if (descriptor >= 0) {
            if (replaces) {
                // Best effort: some file systems keep no permissions.
                static_cast<void>(!fchmod(descriptor, status.st_mode & 0777));
            }
            close(descriptor);
            return answer;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return CString();
}

void RemoveAbandonedBeside(const CString& path) {
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(FolderOf(path.ToUtf8()).c_str()), &closedir);
    if (!stream) {
        return;
    }
    const int folder = dirfd(stream.get());
    while (const dirent* const entry = readdir(stream.get())) {
        const std::optional<pid_t> maker = MakerOfTemporary(entry->d_name);
        struct stat status {};
        if (maker && fstatat(folder, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode) &&
            status.st_uid == geteuid() && std::time(nullptr) - status.st_mtime >= kAbandonedSeconds &&
            !IsOtherProcessAlive(*maker)) {
            unlinkat(folder, entry->d_name, 0);
        }
    }
}

CString ResolveLinks(const CString& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.ToUtf8().c_str(), nullptr), &std::free);
    return resolved ? CString::FromUtf8(resolved.get()) : path;
}

bool FlushFileToDisk(const CString& path) {
    return FlushToDisk(path.ToUtf8().c_str(), O_RDONLY);
}

bool FlushFolderOf(const CString& path) {
    return FlushToDisk(FolderOf(path.ToUtf8()).c_str(), O_RDONLY | O_DIRECTORY);
}

bool RenamePath(const CString& from, const CString& to) {
    return std::rename(from.ToUtf8().c_str(), to.ToUtf8().c_str()) == 0;
}

bool RemoveFile(const CString& path) {
    return unlink(path.ToUtf8().c_str()) == 0;
}

bool CreateFolder(const CString& path) {
    return mkdir(path.ToUtf8().c_str(), 0755) == 0;
}

bool ListFiles(const CString& folder, CStringArray& names) {
    const std::string folderPath = folder.ToUtf8();
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folderPath.c_str()), &closedir);
    if (!stream) {
        return false;
    }
    errno = 0;
    while (const dirent* const entry = readdir(stream.get())) {
        const bool isFile =
            entry->d_type == DT_REG || ((entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) &&
                                        KindOf((folderPath + "/" + entry->d_name).c_str()) == PathKind::kFile);
        if (isFile) {
            names.Push(CString::FromUtf8(entry->d_name));
        }
        errno = 0;
    }
    return errno == 0;
}

}  // namespace NK::Platform
