#pragma once

#include <mutex>

/// The host's process-wide instance of T, made on first use with `new T()` and
/// never destroyed. The first use may happen on several threads at once: one
/// of them makes the instance, the others wait for it.
///
/// The storage of `instance` is defined by whoever owns T, as an explicit
/// specialisation declared in T's header:
///
///     template <> Foo* Singleton<Foo>::instance;          // header
///     template <> Foo* Singleton<Foo>::instance = nullptr; // one source file
template <class T>
class Singleton {
public:
    /// The instance; null until made. A host may set it before the first
    /// use, to put an instance of its own (a Config of a test) in place.
    static T* instance;

    /// The instance, made with `new T()` on the first call. Thread-safe.
    static T* getInstance() {
        if (T* made = __atomic_load_n(&instance, __ATOMIC_ACQUIRE))
            return made;
        static std::mutex making;
        std::lock_guard<std::mutex> lock(making);
        if (!instance)
            __atomic_store_n(&instance, new T(), __ATOMIC_RELEASE);
        return instance;
    }
};
