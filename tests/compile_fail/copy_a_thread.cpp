#include "nk/nk_thread.h"

class CIdleThread : public NK::CThread {
    void Run() override {}
};

void Use() {
    CIdleThread thread;
#ifdef KIVORA_MISTAKE
    CIdleThread copy(thread);
#endif
}
