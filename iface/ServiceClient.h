#pragma once

#include "PreparedRequest.h"

#include <morva/MockFactory.h>
#include <morva/RestClient.h>
#include <morva/Serder.h>

#include <QSharedPointer>
#include <QUrl>

#include <type_traits>

namespace vesk {

/// What tells one service's client from another's: each client class has
/// one, as its static member `service`.
struct ServiceDescription {
    const char* configKey;  ///< the configuration key of the base URL, "Vesk.disc:url"
    const char* defaultUrl; ///< the base URL without configuration: a complete URL ending in "/"
    const char* loggerName; ///< the logger of the service's HTTP client, "veskdisc"
    const char* className;  ///< the client class, "vesk::disc::Api", as diagnostics name it
};

/// What the three service clients share: the service's HTTP client, shared
/// with every prepared request; its base URL, read once from Config; and the
/// preparation of a call. Operations never touch the network.
///
/// A client is made on first use through its singleton
/// (vesk::disc::Api::getInstance(); the first use may happen on several
/// threads at once, and one client is made) and lives until the process
/// ends. Its operations only read it and may run on any thread; the calls that they
/// prepare share the client's one connection, so the library lets only one
/// of them use it at a time.
class ServiceClient {
public:
    /// The base URL that the operations' endpoints are resolved against,
    /// ending in "/".
    QUrl baseUrl() const { return baseUrl_; }
    /// The HTTP client that every call of this service goes through: the
    /// substitute installed in MockFactory when the client was made, or the
    /// client's own.
    QSharedPointer<RestClient> restClient() const { return client_; }

protected:
    /// Takes the RestClient installed in MockFactory (left owned by whoever
    /// installed it, who must keep it alive while the service uses it) or
    /// makes one; gives it the service's logger; reads the base URL from
    /// Config (made on first use) and ends it with "/". A base URL that is not
    /// an absolute http(s) URL is used all the same, with a warning.
    explicit ServiceClient(const ServiceDescription& service);
    ~ServiceClient();

    /// The endpoint ("./discCalc") resolved against the base URL.
    QUrl endpointUrl(const char* endpoint) const;

    /// The prepared call of an endpoint: URL, the request's serialisation as
    /// the body, and the shared client.
    template <class Response, class Request>
    PreparedRequest<Response> prepare(const char* endpoint, const Request& request) const {
        return prepareAt<Response>(endpointUrl(endpoint), request);
    }

    /// The same for an endpoint given as a URL.
    template <class Response, class Request>
    PreparedRequest<Response> prepareAt(const QUrl& url, const Request& request) const {
        static_assert(std::is_copy_constructible_v<Request> &&
                          std::is_copy_constructible_v<Response>,
                      "records are values");
        if (MockFactory<RestClient>::mocked && MockFactory<RestClient>::mocked != client_.data())
            warnLateSubstitute();
        PreparedRequest<Response> prepared;
        prepared.url = url.toString();
        serder::default_serder_type<Request>::strategy.serialize(&prepared.body, &request,
                                                                 Request::staticMetaObject);
        prepared.client = client_;
        return prepared;
    }

private:
    void warnLateSubstitute() const;

    QSharedPointer<RestClient> client_;
    QUrl baseUrl_;
};

} // namespace vesk

/// @cond
template <>
RestClient* MockFactory<RestClient>::mocked;
/// @endcond
