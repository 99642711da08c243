#include "nk/nk_critical_section.h"

class CCounter {
public:
    void Increment() {
#ifndef KIVORA_MISTAKE
        const CLockGuard guard(lock_);
#endif
        ++value_;
    }

private:
    CCriticalSection lock_;
    int value_ NK_GUARDED_BY(lock_) = 0;
};

void Use(CCounter& counter) {
    counter.Increment();
}
