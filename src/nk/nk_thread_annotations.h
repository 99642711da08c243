// Clang's thread-safety attributes under the project's names; nothing with other compilers.
#pragma once

#if defined(__clang__)
#define NK_TSA(x) __attribute__((x))
#else
#define NK_TSA(x)
#endif

#define NK_CAPABILITY(name) NK_TSA(capability(name))
#define NK_SCOPED_CAPABILITY NK_TSA(scoped_lockable)
#define NK_GUARDED_BY(lock) NK_TSA(guarded_by(lock))
#define NK_REQUIRES(...) NK_TSA(requires_capability(__VA_ARGS__))
#define NK_EXCLUDES(...) NK_TSA(locks_excluded(__VA_ARGS__))
#define NK_ACQUIRE(...) NK_TSA(acquire_capability(__VA_ARGS__))
#define NK_TRY_ACQUIRE(...) NK_TSA(try_acquire_capability(__VA_ARGS__))
#define NK_RELEASE(...) NK_TSA(release_capability(__VA_ARGS__))
#define NK_NO_THREAD_SAFETY_ANALYSIS NK_TSA(no_thread_safety_analysis)
