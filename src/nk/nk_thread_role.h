// Which of the program's threads is which, checked in debug builds.
#pragma once

namespace NK {

/// The threads that docs/threads.md defines.
enum class ThreadRole { none, gui, tick, inputTimer, input, player, events };

/// "gui", "input-timer", ...; "none" for a thread without a role.
const char* GetThreadRoleName(ThreadRole role) noexcept;

#ifndef NDEBUG
/// The calling thread's role; none until it is registered. [any]
void RegisterThreadRole(ThreadRole role) noexcept;
ThreadRole GetThreadRole() noexcept;
/// Ends the process with a line on the error output unless the calling thread's role is `role` or none. [any]
void AssertThreadRole(ThreadRole role, const char* file, int line) noexcept;
#endif

}  // namespace NK

/// NK_REGISTER_THREAD_ROLE(tick): the calling thread is the tick thread. Cheap enough for each tick.
/// NK_ASSERT_THREAD_ROLE(gui): the calling thread is the GUI thread, or one without a role, such as a test's.
/// Release builds evaluate nothing.
#ifndef NDEBUG
#define NK_REGISTER_THREAD_ROLE(role) ::NK::RegisterThreadRole(::NK::ThreadRole::role)
#define NK_ASSERT_THREAD_ROLE(role) ::NK::AssertThreadRole(::NK::ThreadRole::role, __FILE__, __LINE__)
#else
#define NK_REGISTER_THREAD_ROLE(role) static_cast<void>(0)
#define NK_ASSERT_THREAD_ROLE(role) static_cast<void>(0)
#endif
