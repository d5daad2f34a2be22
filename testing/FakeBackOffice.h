#pragma once

#include <vesk/CallOutcome.h>
#include <vesk/testing/TestingExport.h>

#include <morva/RestClient.h>
#include <morva/Serder.h>

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantMap>

#include <memory>
#include <stdexcept>

/// What a host links into its own tests, never into a till's program.
namespace vesk::testing {

/// Thrown out of a call that the FakeBackOffice has no reply for: nothing was
/// scripted for the call's operation or URL, or what was scripted is used up.
/// Its what() names the service, the operation and the URL. It is no
/// vesk::Exception, so that a host's handling of service and network failures
/// cannot take it for an answer of the back office.
class VESK_TESTING_EXPORT UnexpectedCall : public std::logic_error {
public:
    /// An unexpected call described by `message`.
    explicit UnexpectedCall(const QString& message);
};

/// A back office inside the test process: the HTTP client of the three
/// services, answering each call with what the test scripted for it and
/// recording what it was sent. A host tests its own code with it without a
/// server, through the library's real call path: the host sees the records,
/// vesk::Exception, vesk::NetworkException and vesk::lastCallOutcome() that
/// the same replies and failures would give over the network.
///
/// Install it once per process, before the first service client is made
/// (the clients are made once and keep the HTTP client they took), and reset
/// it between tests:
/// @code
/// vesk::testing::FakeBackOffice& fake = vesk::testing::FakeBackOffice::install();
///
/// vesk::sales::ItemInfoResponse milk;
/// milk.barcode = "4601234000017";
/// milk.name = "Milk";
/// fake.on("sales", "itemInfo").reply(milk);
/// fake.on("reserveCheque").error(404, "No such store");
/// fake.on("unreserveCheque").fail(vesk::CallOutcome::Failure::NoReply);
///
/// // ... the host's code calls vesk::sales::Api::getInstance() ...
///
/// const auto sent = fake.requests<vesk::sales::ItemInfoRequest>("itemInfo");
/// fake.reset();
/// @endcode
///
/// An operation is named as the service's endpoint, which is also the name of
/// the client's method ("itemInfo", "getCardBalance"); every one of the
/// sixteen names belongs to one service only, so the name alone is enough. A
/// call is matched first by its whole URL, then by its URL's path (both
/// scripted with onUrl()), then by its operation.
///
/// Each scripted reply answers one call, or several with times(), or every
/// call from then on with always(); the replies of one operation answer in the
/// order they were scripted. A call that finds no reply throws UnexpectedCall.
///
/// Every member is safe to call from any thread, while calls are being made.
/// Destroying the double prints nothing unless a call through it is in
/// flight; a service that calls through it afterwards fails with
/// vesk::NetworkException and says why.
class VESK_TESTING_EXPORT FakeBackOffice : public RestClient {
    struct Reply; // one scripted reply

public:
    /// One request that reached the double, as it arrived.
    struct ReceivedRequest {
        QString service;   ///< "disc", "loyalty", "sales"; empty for a URL of no known operation
        QString operation; ///< the last segment of the URL's path: "itemInfo"
        QString url;       ///< the whole URL of the call
        QVariantMap body;  ///< the JSON body as a variant map, as the service would read it
        QByteArray json;   ///< the body as sent
    };

    /// The replies of one operation or URL, scripted one after the other.
    /// Made by on() and onUrl(); valid while its FakeBackOffice lives.
    class VESK_TESTING_EXPORT Script {
    public:
        /// Answers with status 200 and `record` as the JSON body: the host
        /// reads the same record back from the call.
        template <class Response>
        Script& reply(const Response& record) {
            return replyVariant(serder::serialize(record));
        }
        /// Answers with status 200 and `body` (a variant map) as the JSON object.
        Script& replyVariant(const QVariant& body);
        /// Answers with `httpStatus` and `body` exactly as given: a body that
        /// is no JSON object, or a status of the test's choosing.
        Script& replyJson(const QByteArray& body, int httpStatus = 200);
        /// Answers as a service that refuses: `httpStatus` with the JSON body
        /// {"code": code, "userMsg": userMsg}. The host sees vesk::Exception
        /// with that code and message.
        Script& error(int code, const QString& userMsg, int httpStatus = 500);
        /// Fails as the transport reports `failure`: any kind from
        /// CallOutcome::Failure::Refused to CallOutcome::Failure::ContentFailure.
        /// The host sees vesk::NetworkException with `message`, or the
        /// transport's own wording when it is empty, and lastCallOutcome()
        /// the failure and whether the request reached the back office.
        /// Throws std::invalid_argument for any other kind.
        Script& fail(CallOutcome::Failure failure, const QString& message = QString());
        /// The reply scripted last answers `count` calls (at least 1).
        Script& times(int count);
        /// The reply scripted last answers every call from now on.
        Script& always();

    private:
        friend class FakeBackOffice;
        Script(FakeBackOffice* fake, QString key);
        Script& add(const Reply& reply);
        Script& repeatLast(int count, const char* name);

        FakeBackOffice* fake_;
        QString key_;
        quint64 lastId_ = 0; // the reply that times() and always() repeat
        quint64 resets_ = 0; // the reset() that it came after
    };

    /// The double of the process, made on first use and installed as the
    /// substitute HTTP client (MockFactory<RestClient>::mocked) of every
    /// service client made from then on. Call it before the host's first use
    /// of a service; it may be called again, and returns the same double.
    /// Throws std::logic_error, naming the service, when a service client was
    /// already made with another HTTP client, and when another substitute is
    /// installed. The double lives until the process ends, and goes silently.
    static FakeBackOffice& install();

    /// A double of the test's own: install it in MockFactory<RestClient>::mocked
    /// before making the service clients that are to use it, and keep it
    /// alive while they are used.
    FakeBackOffice();
    /// Uninstalls the double if it is the installed substitute.
    ~FakeBackOffice() override;

    /// The replies of `operation` of `service` ("sales", "itemInfo"). Throws
    /// std::invalid_argument when the service has no such operation.
    Script on(const QString& service, const QString& operation);
    /// The replies of the operation named `operation`, whichever service has
    /// it. Throws std::invalid_argument when no service has it.
    Script on(const QString& operation);
    /// The replies of calls to `urlOrPath`: a whole URL
    /// ("http://127.0.0.1:55555/api/x/itemInfo"), or a path ("/api/x/itemInfo")
    /// that matches any host. For URLs of no known operation, such as a
    /// host's own prepared requests.
    Script onUrl(const QString& urlOrPath);

    /// Every request received, in the order received.
    QList<ReceivedRequest> requests() const;
    /// The requests received for `operation`, in the order received.
    QList<ReceivedRequest> requests(const QString& operation) const;
    /// The bodies of the requests received for `operation` read as `Request`
    /// records, in the order received.
    template <class Request>
    QList<Request> requests(const QString& operation) const {
        QList<Request> records;
        for (const ReceivedRequest& received : requests(operation))
            records.append(serder::deserialize<Request>(received.body));
        return records;
    }
    /// The requests that found no reply, and threw UnexpectedCall.
    QList<ReceivedRequest> unexpectedCalls() const;

    /// Forgets every scripted reply and every request received.
    void reset();

    /// @cond
    // The HTTP client's side, called by the library.
    void send(const http::Request& request) override;
    http::Response response() override;
    /// @endcond

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace vesk::testing
