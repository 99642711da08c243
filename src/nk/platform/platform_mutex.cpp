#include "nk/platform/platform_mutex.h"

#include "nk/nk_exception.h"

namespace NK::Platform {

CRecursiveMutex::CRecursiveMutex() {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    int result = pthread_mutex_init(&mutex_, &attributes);
    if (result != 0) {
        pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_NONE);
        result = pthread_mutex_init(&mutex_, &attributes);
    }
    pthread_mutexattr_destroy(&attributes);
    if (result != 0) {
        throw CException(L"Cannot create a mutex.");
    }
}

CRecursiveMutex::~CRecursiveMutex() {
    pthread_mutex_destroy(&mutex_);
}

}  // namespace NK::Platform
