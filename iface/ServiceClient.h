#pragma once

#include "PreparedRequest.h"

#include <morva/MockFactory.h>
#include <morva/RestClient.h>
#include <morva/Serder.h>

#include <QSharedPointer>
#include <QUrl>

#include <type_traits>

namespace vesk {

// What tells one service's client from another's.
struct ServiceDescription {
    const char* configKey;  // "Vesk.disc:url"
    const char* defaultUrl; // a complete URL ending in "/"
    const char* loggerName; // "veskdisc"
    const char* className;  // "vesk::disc::Api", as diagnostics name it
};

// What the three service clients share: the service's HTTP client, shared
// with every prepared request; its base URL, read once from Config; and the
// preparation of a call. Operations never touch the network.
class ServiceClient {
public:
    QUrl baseUrl() const { return baseUrl_; }
    QSharedPointer<RestClient> restClient() const { return client_; }

protected:
    // Takes the RestClient installed in MockFactory (left owned by whoever
    // installed it, who must keep it alive while the service uses it) or
    // makes one; gives it the service's logger; reads the base URL from
    // Config (made on first use) and ends it with "/". A base URL that is not
    // an absolute http(s) URL is used all the same, with a warning.
    explicit ServiceClient(const ServiceDescription& service);
    ~ServiceClient();

    // The endpoint ("./discCalc") resolved against the base URL.
    QUrl endpointUrl(const char* endpoint) const;

    // The prepared call of an endpoint: URL, the request's serialisation as
    // the body, and the shared client.
    template <class Response, class Request>
    PreparedRequest<Response> prepare(const char* endpoint, const Request& request) const {
        return prepareAt<Response>(endpointUrl(endpoint), request);
    }

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

template <>
RestClient* MockFactory<RestClient>::mocked;
