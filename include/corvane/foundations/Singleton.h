// One object for the whole process, created on first use.
#pragma once

#include <corvane/foundations/ThreadLock.h>

/// Creates and destroys the one object of `T`, which derives from it. There is one instantiation, for
/// ApplicationConfigManager, and its code is in the library.
template <class T>
class Singleton {
public:
    Singleton() = default;
    /// Copying the derived object does not copy the singleton.
    Singleton(const Singleton&) {}
    /// Assigns nothing.
    Singleton& operator=(const Singleton&) { return *this; } // NOLINT(bugprone-unhandled-self-assignment)

    /// The object, created by the first call and again by the first call after Delete; never null. Owned by
    /// the library. Thread-safe; takes no lock once the object exists. If construction throws, the exception
    /// is passed on and the next call tries again.
    static T* Instance();

    /// Destroys the object if there is one. No thread may use a pointer from Instance after that.
    static void Delete();

protected:
    virtual ~Singleton() = default;

    static ThreadLock s_lock;                                 ///< held while the object is made or destroyed
    static T* volatile s_instance CORVANE_GUARDED_BY(s_lock); ///< the object, or null
};
