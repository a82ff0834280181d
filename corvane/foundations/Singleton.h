// One object for the whole process, made at the first call for it.
#pragma once

#include <corvane/foundations/ThreadLock.h>

/// Gives `T`, which derives from it, a controlled birth and death. There is one instantiation, for
/// ApplicationConfigManager, and its code is in the library.
template <class T>
class Singleton {
public:
    Singleton() = default;
    /// A copy of the derived object is no other singleton: nothing is copied here.
    Singleton(const Singleton&) {}
    /// Changes nothing.
    Singleton& operator=(const Singleton&) { return *this; } // NOLINT(bugprone-unhandled-self-assignment)

    /// The process's one object, made at the first call and again at the first call after Delete; never null.
    /// It belongs to the library. Takes no lock once the object exists; any thread may call it. Throws what
    /// the construction throws, and the next call tries again.
    static T* Instance();

    /// Destroys the object if there is one. No thread may use a pointer from Instance afterwards.
    static void Delete();

protected:
    virtual ~Singleton() = default;

    static ThreadLock s_lock;      ///< kept while the object is made or destroyed
    static T* volatile s_instance; ///< the object, or null
};
