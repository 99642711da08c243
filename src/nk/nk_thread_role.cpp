#include "nk/nk_thread_role.h"

#include <cstdio>
#include <cstdlib>

namespace NK {

const char* GetThreadRoleName(ThreadRole role) noexcept {
    switch (role) {
        case ThreadRole::none:
            return "none";
        case ThreadRole::gui:
            return "gui";
        case ThreadRole::tick:
            return "tick";
        case ThreadRole::inputTimer:
            return "input-timer";
        case ThreadRole::input:
            return "input";
        case ThreadRole::player:
            return "player";
        case ThreadRole::events:
            return "events";
    }
    return "unknown";
}

#ifndef NDEBUG
namespace {
thread_local ThreadRole ownRole = ThreadRole::none;
}  // namespace

void RegisterThreadRole(ThreadRole role) noexcept {
    ownRole = role;
}

ThreadRole GetThreadRole() noexcept {
    return ownRole;
}

void AssertThreadRole(ThreadRole role, const char* file, int line) noexcept {
    if (ownRole != ThreadRole::none && ownRole != role) {
        std::fprintf(stderr, "%s:%d: for the %s thread, called on the %s thread\n", file, line, GetThreadRoleName(role),
                     GetThreadRoleName(ownRole));
        std::abort();
    }
}
#endif

}  // namespace NK
