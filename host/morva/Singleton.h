#pragma once

// The host's process-wide instance of T, made on first use with `new T()` and
// never destroyed. Not guarded: the first use must happen on one thread.
//
// The storage of `instance` is defined by whoever owns T, as an explicit
// specialisation declared in T's header:
//     template <> Foo* Singleton<Foo>::instance;          // header
//     template <> Foo* Singleton<Foo>::instance = nullptr; // one source file
template <class T>
class Singleton {
public:
    static T* instance;

    static T* getInstance() {
        if (!instance)
            instance = new T();
        return instance;
    }
};
