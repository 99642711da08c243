#include "nk/nk_priority_service.h"

#include <atomic>

namespace NK {

namespace {
std::atomic<const TPriorityService*> installed{nullptr};
}  // namespace

void SetPriorityService(const TPriorityService* service) {
    installed = service;
}

const TPriorityService* GetPriorityService() {
    return installed;
}

}  // namespace NK
