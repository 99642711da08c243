#include "nk/nk_critical_section.h"

void Use() {
    CCriticalSection lock;
#ifdef KIVORA_MISTAKE
    CCriticalSection copy(lock);
#endif
}
