#include "nk/nk_critical_section.h"

#include "nk/nk_exception.h"
#include "nk/nk_sleep.h"
#include "nk/platform/platform_mutex.h"

CCriticalSection::CCriticalSection(std::uint32_t trySleepMs, std::uint32_t tryAttempts, std::uint32_t reserve)
    : tryAttempts_(tryAttempts), trySleepMs_(trySleepMs), reserve_(reserve) {
    if (trySleepMs == 0 || tryAttempts == 0 || reserve == 0) {
        throw NK::CException(L"Bad critical section initialization parameters.");
    }
    section_ = std::make_unique<NK::Platform::CRecursiveMutex>();
}

CCriticalSection::~CCriticalSection() = default;

// The analysis cannot see that the capability is the mutex inside.
void CCriticalSection::Lock() NK_NO_THREAD_SAFETY_ANALYSIS {
    section_->Lock();
}
void CCriticalSection::Unlock() NK_NO_THREAD_SAFETY_ANALYSIS {
    section_->Unlock();
}

bool CCriticalSection::TryLock() NK_NO_THREAD_SAFETY_ANALYSIS {
    for (std::uint32_t attempt = 0; attempt < tryAttempts_; ++attempt) {
        if (section_->TryLock()) {
            return true;
        }
        NK::SystemSleeper().Sleep(trySleepMs_);
    }
    return false;
}

bool CCriticalSection::TryLockFor(std::uint32_t milliseconds) NK_NO_THREAD_SAFETY_ANALYSIS {
    return section_->TryLockFor(milliseconds);
}

namespace NK {
namespace {
CCriticalSection& FrameworkLock() {
    // Never destroyed: code that runs while the process ends may still need it.
    static CCriticalSection& lock = *new CCriticalSection(1, 100, 100);
    return lock;
}
}  // namespace

void GlobalLock() NK_NO_THREAD_SAFETY_ANALYSIS {
    FrameworkLock().Lock();
}
void GlobalUnlock() NK_NO_THREAD_SAFETY_ANALYSIS {
    FrameworkLock().Unlock();
}

}  // namespace NK
