#pragma once

/// A substitute for T installed by a host or a test; empty unless installed.
/// The substitute stays owned by whoever installed it. Its storage is defined,
/// as for Singleton, by the library that consults it.
///
/// The library consults MockFactory<RestClient>::mocked once per service,
/// when the service's client is made: a substitute must be installed before
/// the service's first use, and outlive the services that took it.
template <class T>
struct MockFactory {
    /// The substitute, or null: then the library makes its own T.
    static T* mocked;
};
