#pragma once

#include "PreparedRequestBase.h"

#include <morva/Serder.h>

#include <optional>

namespace vesk {

// The prepared call of an operation whose reply is the record R.
template <class R>
class PreparedRequest : public PreparedRequestBase {
public:
    using Response = R;

    // Performs the call the first time and keeps the record; later calls
    // return the kept record. Use getResponseVariant() for a new exchange.
    const R& response() {
        if (!response_)
            response_ = serder::deserialize<R>(getResponseVariant());
        return *response_;
    }

    // The record kept by response(), if it has run.
    const std::optional<R>& keptResponse() const { return response_; }

private:
    std::optional<R> response_;
};

} // namespace vesk
