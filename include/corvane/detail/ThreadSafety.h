// Annotations for clang's -Wthread-safety; other compilers ignore them.
#pragma once

#ifdef __clang__
#define CORVANE_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define CORVANE_THREAD_SAFETY(attribute)
#endif

// Of a class: its objects are locks, or hold one for a scope.
#define CORVANE_LOCK CORVANE_THREAD_SAFETY(capability("lock"))
#define CORVANE_LOCK_GUARD CORVANE_THREAD_SAFETY(scoped_lockable)

// Of a variable or function: it may be used only while `lock` is held.
#define CORVANE_GUARDED_BY(lock) CORVANE_THREAD_SAFETY(guarded_by(lock))
#define CORVANE_REQUIRES(lock) CORVANE_THREAD_SAFETY(requires_capability(lock))

// Of a function: what it does to a lock. The last one is not checked at all.
#define CORVANE_ACQUIRES(...) CORVANE_THREAD_SAFETY(acquire_capability(__VA_ARGS__))
#define CORVANE_RELEASES(...) CORVANE_THREAD_SAFETY(release_capability(__VA_ARGS__))
#define CORVANE_TAKES_NO_LOCK CORVANE_THREAD_SAFETY(no_thread_safety_analysis)
