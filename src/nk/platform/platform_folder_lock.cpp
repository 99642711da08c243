#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "nk/nk_folder_lock.h"
#include "nk/platform/platform_files.h"

namespace NK {

std::unique_ptr<CFolderLock> CFolderLock::Take(const CString& folder, CSleeper& sleeper) {
    constexpr std::uint32_t kPauseMs = 5;
    const int descriptor = open(folder.ToUtf8().c_str(), O_RDONLY | O_DIRECTORY | Platform::GetOpenFlags());
    if (descriptor < 0) {
        return nullptr;
    }
    std::unique_ptr<CFolderLock> lock(new CFolderLock(descriptor));
    for (std::uint32_t waited = 0; flock(descriptor, LOCK_EX | LOCK_NB) != 0; waited += kPauseMs) {
        if (waited >= kLimitMs) {
            return nullptr;
        }
        sleeper.Sleep(kPauseMs);
    }
    return lock;
}

CFolderLock::~CFolderLock() {
    close(descriptor_);
}

}  // namespace NK
