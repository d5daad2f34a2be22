#pragma once

#include "PreparedRequestBase.h"

#include <morva/Serder.h>

#include <optional>

namespace vesk {

namespace detail {
// Fills `record` from the reply map through the type's strategy, and warns
// through the call's service logger about reply members that did not fit.
void readReply(const PreparedRequestBase& call, const QVariant& reply, void* record,
               const serder::details::Strategy& strategy, const QMetaObject& type);
} // namespace detail

/// The prepared call of an operation whose reply is the record R: what every
/// operation of the service clients returns.
///
///     const vesk::sales::ItemInfoResponse item =
///         vesk::sales::Api::getInstance()->itemInfo(request).response();
template <class R>
class PreparedRequest : public PreparedRequestBase {
public:
    using Response = R; ///< the reply's record

    /// Performs the call the first time and keeps the record; later calls
    /// return the kept record. Use getResponseVariant() for a new exchange.
    /// Reply members that name no member are ignored; members that the reply
    /// lacks keep their defaults. Not to be called on one prepared request
    /// from several threads at once, as it keeps the record: each thread
    /// performs its own copy.
    /// @throws vesk::NetworkException, vesk::Exception as getResponseVariant().
    const R& response() & {
        if (!response_) {
            R record;
            detail::readReply(*this, getResponseVariant(), &record,
                              serder::default_serder_type<R>::strategy, R::staticMetaObject);
            response_ = std::move(record);
        }
        return *response_;
    }

    /// The same on a prepared request about to go away, as in the one-line
    /// `const auto& r = api->itemInfo(q).response();`: the record is returned
    /// by value (a cheap copy: its strings and lists are shared), so that it
    /// outlives the prepared request.
    R response() && { return static_cast<PreparedRequest&>(*this).response(); }

    /// The record kept by response(), if it has run.
    const std::optional<R>& keptResponse() const { return response_; }

private:
    std::optional<R> response_;
};

} // namespace vesk
