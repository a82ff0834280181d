// What a lock guards, for clang's -Wthread-safety to check; other compilers do not see it.
#pragma once

#ifdef __clang__
#define CORVANE_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define CORVANE_THREAD_SAFETY(attribute)
#endif

#define CORVANE_LOCK CORVANE_THREAD_SAFETY(capability("lock"))           // a class whose objects are locks
#define CORVANE_LOCK_GUARD CORVANE_THREAD_SAFETY(scoped_lockable)        // a class that holds one for a scope
#define CORVANE_GUARDED_BY(lock) CORVANE_THREAD_SAFETY(guarded_by(lock)) // used with the lock held
#define CORVANE_REQUIRES(lock) CORVANE_THREAD_SAFETY(requires_capability(lock)) // called with it held
#define CORVANE_ACQUIRES(...) CORVANE_THREAD_SAFETY(acquire_capability(__VA_ARGS__))
#define CORVANE_RELEASES(...) CORVANE_THREAD_SAFETY(release_capability(__VA_ARGS__))
#define CORVANE_TAKES_NO_LOCK CORVANE_THREAD_SAFETY(no_thread_safety_analysis) // its callers see to it
