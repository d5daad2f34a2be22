#pragma once

// A substitute for T installed by a host or a test; empty unless installed.
// The substitute stays owned by whoever installed it. Its storage is defined,
// as for Singleton, by the library that consults it.
template <class T>
struct MockFactory {
    static T* mocked;
};
