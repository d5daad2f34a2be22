#pragma once

#include <morva/MockFactory.h>
#include <morva/RestClient.h>

#include <memory>

namespace vesk::test {

// A service client made while `substitute` is installed, so that it takes
// the substitute as its HTTP client; nothing is left installed afterwards.
template <class Api>
std::unique_ptr<Api> apiOver(RestClient& substitute) {
    MockFactory<RestClient>::mocked = &substitute;
    auto api = std::make_unique<Api>();
    MockFactory<RestClient>::mocked = nullptr;
    return api;
}

} // namespace vesk::test
