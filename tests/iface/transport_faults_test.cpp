// What a till meets on the network, through the library against a server
// that misbehaves on purpose: the exception each fault raises, a stable part
// of its message, how long it takes at most, and that the next call on the
// same client gets its own reply over a healthy connection.

#include "support/ConfigScope.h"
#include "support/FaultServer.h"
#include "support/LoopbackSocket.h"
#include "support/RawServer.h"

#include <vesk/vesk.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtGlobal>

#include <chrono>
#include <functional>
#include <ostream>
#include <string>
#include <thread>

#include <sys/socket.h>
#include <unistd.h>

namespace vesk {
namespace {

using Answer = test::FaultServer::Answer;
using Clock = std::chrono::steady_clock;
using test::FaultServer;
using testing::HasSubstr;

constexpr int timeoutMs = 1000;
const std::string mayHaveReceived = "the request was sent, so the server may have received it";

QSharedPointer<RestClient> client(qint64 maxBodyBytes = 0) {
    RestClient::Settings settings;
    settings.timeoutMs = timeoutMs;
    settings.connectTimeoutMs = timeoutMs;
    if (maxBodyBytes > 0)
        settings.maxBodyBytes = maxBodyBytes;
    return QSharedPointer<RestClient>::create(settings);
}

PreparedRequestBase call(const QSharedPointer<RestClient>& through, const QString& url, int n) {
    PreparedRequestBase request;
    request.client = through;
    request.url = url;
    request.body = QVariantMap{{QStringLiteral("n"), n}};
    return request;
}

// The reply map of a healthy call that posted {"n": n}.
QVariant echoOf(int n) {
    return QVariantMap{{QStringLiteral("echo"), QVariantMap{{QStringLiteral("n"), n}}}};
}

enum class Raised { Nothing, ServiceError, NetworkError };

struct Outcome {
    Raised raised = Raised::Nothing;
    std::string message;
    int code = 0;
    QVariant reply;
    Clock::duration took{};
};

Outcome perform(const PreparedRequestBase& request) {
    Outcome outcome;
    const auto started = Clock::now();
    try {
        outcome.reply = request.getResponseVariant();
    } catch (const NetworkException& e) {
        outcome.raised = Raised::NetworkError;
        outcome.message = e.what();
    } catch (const Exception& e) {
        outcome.raised = Raised::ServiceError;
        outcome.message = e.what();
        outcome.code = e.code();
    }
    outcome.took = Clock::now() - started;
    return outcome;
}

std::string chunkedReply(const std::string& chunks) {
    return "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nTransfer-Encoding: "
           "chunked\r\n\r\n" +
           chunks;
}

const std::string replyBody = R"({"n": 1})";
const std::string gzipped =
    FaultServer::gzip(R"({"n": 1, "text": "a reply long enough to compress"})");

using Failure = CallOutcome::Failure;
using Reached = CallOutcome::Reached;

struct FaultRow {
    const char* name;
    std::function<Answer()> fault; // the answer to the first request
    Raised raised;
    const char* message; // a stable part of it
    int withinMs;        // an upper bound with slack
    Failure failure;     // the outcome's kind
    Reached reached;     // and whether the request may have arrived
    qint64 maxBodyBytes = 0;
};

void PrintTo(const FaultRow& row, std::ostream* out) {
    *out << row.name;
}

Answer bytes(std::string raw, Answer::Then then = Answer::Then::KeepAlive) {
    Answer answer;
    answer.bytes = std::move(raw);
    answer.then = then;
    return answer;
}

class TransportFaultTest : public testing::TestWithParam<FaultRow> {
protected:
    test::ConfigScope config;
};

TEST_P(TransportFaultTest, RaisesItsExceptionInTimeAndTheNextCallGetsItsOwnReply) {
    const FaultRow& row = GetParam();
    FaultServer server([&row](const FaultServer::Request& request) {
        return request.connection == 0 && request.index == 0 ? row.fault()
                                                             : FaultServer::echo(request);
    });
    const QSharedPointer<RestClient> shared = client(row.maxBodyBytes);

    const Outcome first = perform(call(shared, server.url("/op"), 1));

    const CallOutcome outcome = lastCallOutcome();

    EXPECT_EQ(first.raised, row.raised) << first.message;
    EXPECT_THAT(first.message, HasSubstr(row.message));
    EXPECT_LT(first.took, std::chrono::milliseconds(row.withinMs));
    EXPECT_EQ(outcome.failure(), row.failure) << CallOutcome::name(outcome.failure()).toStdString();
    EXPECT_EQ(outcome.reached(), row.reached) << CallOutcome::name(outcome.reached()).toStdString();
    EXPECT_EQ(outcome.url(), server.url("/op"));
    if (row.raised == Raised::NetworkError) {
        // Every failure after the request left says so, in the same words.
        EXPECT_THAT(first.message, testing::EndsWith("; " + mayHaveReceived)) << first.message;
        EXPECT_EQ(outcome.httpStatus(), 0);
    }
    const Outcome next = perform(call(shared, server.url("/op"), 2));
    EXPECT_EQ(next.raised, Raised::Nothing) << next.message;
    EXPECT_EQ(next.reply, echoOf(2));
}

INSTANTIATE_TEST_SUITE_P(
    Faults, TransportFaultTest,
    testing::Values(
        FaultRow{"StallBeforeAnyReply", [] { return bytes("", Answer::Then::Stall); },
                 Raised::NetworkError, "No reply from", timeoutMs + 2000, Failure::NoReply,
                 Reached::Unknown},
        FaultRow{"DripPastTheTimeout",
                 [] {
                     Answer answer = bytes(FaultServer::reply(200, std::string(200, ' ') + "{}"));
                     answer.dripBytes = 1;
                     answer.pauseMs = 20;
                     return answer;
                 },
                 Raised::NetworkError, "Incomplete reply from", timeoutMs + 2000, Failure::ReplyCut,
                 Reached::Yes},
        FaultRow{"ResetBeforeAnyReply", [] { return bytes("", Answer::Then::Reset); },
                 Raised::NetworkError, "was lost before the reply", 2000, Failure::ConnectionLost,
                 Reached::Unknown},
        FaultRow{"CloseBeforeAnyReply", [] { return bytes("", Answer::Then::Close); },
                 Raised::NetworkError, "was lost before the reply: it closed", 2000,
                 Failure::ConnectionLost, Reached::Unknown},
        FaultRow{"CloseAfterTheStatusLine",
                 [] { return bytes("HTTP/1.1 200 OK\r\n", Answer::Then::Close); },
                 Raised::NetworkError, "Incomplete reply from", 2000, Failure::ReplyCut,
                 Reached::Yes},
        FaultRow{"BodyCutByClose",
                 [] {
                     return bytes(FaultServer::reply(200, std::string(100, ' ')).substr(0, 90),
                                  Answer::Then::Close);
                 },
                 Raised::NetworkError, "Incomplete reply from", 2000, Failure::ReplyCut,
                 Reached::Yes},
        FaultRow{"BodyCutByReset",
                 [] {
                     return bytes(FaultServer::reply(200, std::string(100, ' ')).substr(0, 90),
                                  Answer::Then::Reset);
                 },
                 Raised::NetworkError, "Incomplete reply from", 2000, Failure::ReplyCut,
                 Reached::Yes},
        FaultRow{"StallInTheBody",
                 [] {
                     return bytes(FaultServer::reply(200, std::string(100, ' ')).substr(0, 90),
                                  Answer::Then::Stall);
                 },
                 Raised::NetworkError, "did not arrive whole within 1000 ms", timeoutMs + 2000,
                 Failure::ReplyCut, Reached::Yes},
        FaultRow{"BadChunkFraming",
                 [] { return bytes(chunkedReply("zz\r\n{}\r\n0\r\n\r\n"), Answer::Then::Close); },
                 Raised::NetworkError, "Incomplete reply from", 2000, Failure::ReplyCut,
                 Reached::Yes},
        FaultRow{"BodyOverTheLimit",
                 [] { return bytes(FaultServer::reply(200, std::string(4096, ' '))); },
                 Raised::NetworkError, "exceeds the limit of 1024 bytes", 2000,
                 Failure::ReplyOverLimit, Reached::Yes, 1024},
        FaultRow{"GzipCutToAMatchingLength",
                 [] {
                     return bytes(FaultServer::reply(200, gzipped.substr(0, gzipped.size() / 2),
                                                     "Content-Encoding: gzip\r\n"));
                 },
                 Raised::NetworkError, "Incomplete reply from", 2000, Failure::ReplyCut,
                 Reached::Yes},
        FaultRow{"GzipCorrupt",
                 [] {
                     std::string corrupt = gzipped;
                     for (std::size_t i = 12; i < corrupt.size() - 8; ++i)
                         corrupt[i] = char(0xA5);
                     return bytes(FaultServer::reply(200, corrupt, "Content-Encoding: gzip\r\n"));
                 },
                 Raised::NetworkError, "Undecodable reply from", 2000, Failure::ReplyUndecodable,
                 Reached::Yes},
        FaultRow{"GzipWithGarbageAfterIt",
                 [] {
                     return bytes(FaultServer::reply(200, gzipped + "garbage",
                                                     "Content-Encoding: gzip\r\n"));
                 },
                 Raised::NetworkError, "Undecodable reply from", 2000, Failure::ReplyUndecodable,
                 Reached::Yes},
        FaultRow{"BrotliNotAskedFor",
                 [] {
                     return bytes(
                         FaultServer::reply(200, "\x1b\x07\x00\xf8", "Content-Encoding: br\r\n"));
                 },
                 Raised::NetworkError, "Undecodable reply from", 2000, Failure::ReplyUndecodable,
                 Reached::Yes},
        FaultRow{
            "UnknownEncoding",
            [] { return bytes(FaultServer::reply(200, replyBody, "Content-Encoding: x-foo\r\n")); },
            Raised::NetworkError, "the content encoding \"x-foo\" is not supported", 2000,
            Failure::ReplyUndecodable, Reached::Yes},
        FaultRow{"TwoDifferentContentLengths",
                 [] {
                     return bytes(
                         "HTTP/1.1 200 OK\r\nContent-Length: 8\r\nContent-Length: 9\r\n\r\n" +
                         replyBody + " ");
                 },
                 Raised::NetworkError, "Malformed reply from", 2000, Failure::ReplyUndecodable,
                 Reached::Yes},
        FaultRow{"ContentLengthWithChunked",
                 [] {
                     return bytes("HTTP/1.1 200 OK\r\nContent-Length: 8\r\n"
                                  "Transfer-Encoding: chunked\r\n\r\n8\r\n" +
                                  replyBody + "\r\n0\r\n\r\n");
                 },
                 Raised::NetworkError, "Malformed reply from", 2000, Failure::ReplyUndecodable,
                 Reached::Yes},
        FaultRow{
            "ContentLengthNotANumber",
            [] { return bytes("HTTP/1.1 200 OK\r\nContent-Length: eight\r\n\r\n" + replyBody); },
            Raised::NetworkError, "Malformed reply from", 2000, Failure::ReplyUndecodable,
            Reached::Yes},
        FaultRow{"ServiceError",
                 [] {
                     return bytes(
                         FaultServer::reply(500, R"({"code": 17, "userMsg": "Card blocked"})"));
                 },
                 Raised::ServiceError, "Card blocked", 2000, Failure::ServiceError, Reached::Yes},
        FaultRow{"HtmlErrorPage",
                 [] { return bytes(FaultServer::reply(502, "<html>Bad Gateway</html>")); },
                 Raised::ServiceError, "", 2000, Failure::ServiceError, Reached::Yes}),
    [](const testing::TestParamInfo<FaultRow>& info) { return std::string(info.param.name); });

TEST(TransportFaults, RefusedConnectionIsANetworkErrorAndNothingWasSent) {
    test::ConfigScope config;
    const QSharedPointer<RestClient> shared = client();
    const QString url = QStringLiteral("http://127.0.0.1:%1/op").arg(test::closedPort());

    const Outcome outcome = perform(call(shared, url, 1));
    const CallOutcome fate = lastCallOutcome();

    EXPECT_EQ(outcome.raised, Raised::NetworkError);
    EXPECT_EQ(outcome.message, "Connection refused by " + url.toStdString() + "; nothing was sent");
    EXPECT_LT(outcome.took, std::chrono::seconds(2));
    EXPECT_EQ(fate.failure(), Failure::Refused);
    EXPECT_EQ(fate.reached(), Reached::No);
    EXPECT_EQ(fate.httpStatus(), 0);
}

TEST(TransportFaults, TlsRefusedBeforeTheRequestIsANetworkErrorAndNothingWasSent) {
    test::ConfigScope config;
    // A server that answers whatever connects with plain HTTP at once: the
    // TLS hello gets no TLS answer.
    int port = 0;
    const int listener = test::boundLoopbackSocket(&port, "the plain server");
    ASSERT_EQ(::listen(listener, 1), 0);
    std::thread plain([listener] {
        const int connection = ::accept(listener, nullptr, nullptr);
        if (connection < 0)
            return;
        const char answer[] = "HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n";
        ::send(connection, answer, sizeof answer - 1, MSG_NOSIGNAL);
        ::shutdown(connection, SHUT_WR);
        char ignored[512];
        while (::recv(connection, ignored, sizeof ignored, 0) > 0) {
        }
        ::close(connection);
    });
    const QString url = QStringLiteral("https://127.0.0.1:%1/op").arg(port);

    const Outcome outcome = perform(call(client(), url, 1));
    const CallOutcome fate = lastCallOutcome();
    plain.join();
    ::close(listener);

    EXPECT_EQ(outcome.raised, Raised::NetworkError);
    EXPECT_THAT(outcome.message,
                testing::StartsWith("TLS with " + url.toStdString() + " failed: "));
    EXPECT_THAT(outcome.message, testing::EndsWith("; nothing was sent"));
    EXPECT_LT(outcome.took, std::chrono::seconds(2));
    EXPECT_EQ(fate.failure(), Failure::TlsFailed);
    EXPECT_EQ(fate.reached(), Reached::No);
}

TEST(TransportFaults, A200WhoseBodyIsNotAnObjectIsNoFailureButItsOutcomeSaysSo) {
    test::ConfigScope config;
    FaultServer server([](const FaultServer::Request&) {
        return bytes(FaultServer::reply(200, "<html>Maintenance</html>"));
    });

    const Outcome outcome = perform(call(client(), server.url("/op"), 1));
    const CallOutcome fate = lastCallOutcome();

    EXPECT_EQ(outcome.raised, Raised::Nothing);
    EXPECT_EQ(outcome.reply, QVariant(QVariantMap()));
    EXPECT_EQ(fate.failure(), Failure::NotAnObject);
    EXPECT_EQ(fate.reached(), Reached::Yes);
    EXPECT_EQ(fate.httpStatus(), 200);
    EXPECT_EQ(fate.bytesReceived(), 24);
    EXPECT_EQ(fate.bytesSent(), 7); // {"n":1}
}

TEST(TransportFaults, IdenticalContentLengthsAreAccepted) {
    test::ConfigScope config;
    FaultServer server([](const FaultServer::Request&) {
        return bytes("HTTP/1.1 200 OK\r\nContent-Length: 8\r\nContent-Length: 8\r\n\r\n" +
                     replyBody);
    });

    const Outcome outcome = perform(call(client(), server.url("/op"), 1));

    EXPECT_EQ(outcome.raised, Raised::Nothing) << outcome.message;
    EXPECT_EQ(outcome.reply, QVariant(QVariantMap{{QStringLiteral("n"), 1}}));
}

TEST(TransportFaults, WholeGzipReplyIsDecodedAndGzipIsAllThatIsOffered) {
    test::ConfigScope config;
    FaultServer server([](const FaultServer::Request&) {
        return bytes(FaultServer::reply(200, gzipped, "Content-Encoding: gzip\r\n"));
    });

    const Outcome outcome = perform(call(client(), server.url("/op"), 1));

    EXPECT_EQ(outcome.raised, Raised::Nothing) << outcome.message;
    EXPECT_EQ(outcome.reply.toMap().value(QStringLiteral("text")),
              QStringLiteral("a reply long enough to compress"));
    ASSERT_EQ(server.received().size(), 1u);
    EXPECT_EQ(server.received()[0].headers["accept-encoding"], "gzip");
}

// A back office that writes a reply twice, or answers early and then reads
// the rest of the request as another one: the extra reply must never be
// taken for the next call's.
TEST(TransportFaults, ExtraReplyRightAfterAReplyIsNeverTheNextCallsReply) {
    test::ConfigScope config;
    FaultServer server([](const FaultServer::Request& request) {
        Answer answer = FaultServer::echo(request);
        answer.bytes += FaultServer::reply(200, R"({"echo": "stale"})");
        return answer;
    });
    const QSharedPointer<RestClient> shared = client();

    for (int n = 1; n <= 20; ++n) {
        const Outcome outcome = perform(call(shared, server.url("/op"), n));
        ASSERT_EQ(outcome.raised, Raised::Nothing) << outcome.message;
        ASSERT_EQ(outcome.reply, echoOf(n)) << "call " << n;
    }
}

TEST(TransportFaults, ExtraReplyArrivingLaterIsNeverTheNextCallsReply) {
    test::ConfigScope config;
    FaultServer server([](const FaultServer::Request& request) {
        Answer answer = FaultServer::echo(request);
        if (request.connection == 0 && request.index == 0)
            answer.afterGate = FaultServer::reply(200, R"({"echo": "stale"})");
        return answer;
    });
    const QSharedPointer<RestClient> shared = client();
    ASSERT_EQ(perform(call(shared, server.url("/op"), 1)).reply, echoOf(1));

    server.openGate();
    ASSERT_TRUE(server.waitAfterGate());
    const Outcome second = perform(call(shared, server.url("/op"), 2));

    EXPECT_EQ(second.raised, Raised::Nothing) << second.message;
    EXPECT_EQ(second.reply, echoOf(2));
    EXPECT_EQ(server.connections(), 2); // the tainted connection was not used again
}

TEST(TransportFaults, EarlyErrorReplyAndAReplyToTheBodyLeaveTheNextCallItsOwn) {
    test::ConfigScope config;
    FaultServer server([](const FaultServer::Request& request) {
        if (request.connection == 0 && request.index == 0) {
            // Answered before reading the body, then the body read as a request.
            return bytes(FaultServer::reply(400, R"({"code": 7, "userMsg": "too early"})") +
                         FaultServer::reply(400, R"({"code": 8, "userMsg": "bad request line"})"));
        }
        return FaultServer::echo(request);
    });
    const QSharedPointer<RestClient> shared = client();

    const Outcome first = perform(call(shared, server.url("/op"), 1));
    EXPECT_EQ(first.raised, Raised::ServiceError);
    EXPECT_EQ(first.code, 7);
    EXPECT_EQ(first.message, "too early");

    const Outcome second = perform(call(shared, server.url("/op"), 2));
    EXPECT_EQ(second.raised, Raised::Nothing) << second.message;
    EXPECT_EQ(second.reply, echoOf(2));
}

struct DropRow {
    const char* name;
    Answer::Then then;
};

void PrintTo(const DropRow& row, std::ostream* out) {
    *out << row.name;
}

class RequestNeverSentTwiceTest : public testing::TestWithParam<DropRow> {
protected:
    test::ConfigScope config;
};

// libcurl would send the request again on a new connection when a reused one
// dies before the reply; for a POST that may commit a cheque twice.
TEST_P(RequestNeverSentTwiceTest, WhenAReusedConnectionDiesAfterTheRequestWentOut) {
    const Answer::Then drop = GetParam().then;
    FaultServer server([drop](const FaultServer::Request& request) {
        if (request.connection == 0 && request.index == 1)
            return bytes("", drop);
        return FaultServer::echo(request);
    });
    const QSharedPointer<RestClient> shared = client();
    ASSERT_EQ(perform(call(shared, server.url("/commitCheque"), 1)).reply, echoOf(1));

    const Outcome second = perform(call(shared, server.url("/commitCheque"), 2));

    EXPECT_EQ(second.raised, Raised::NetworkError);
    EXPECT_THAT(second.message, HasSubstr(mayHaveReceived));
    EXPECT_LT(second.took, std::chrono::seconds(2));
    EXPECT_EQ(server.requests(), 2); // request 2 reached the server once, and only once

    const Outcome third = perform(call(shared, server.url("/commitCheque"), 3));
    EXPECT_EQ(third.reply, echoOf(3));
    EXPECT_EQ(server.requests(), 3);
}

INSTANTIATE_TEST_SUITE_P(Drops, RequestNeverSentTwiceTest,
                         testing::Values(DropRow{"Close", Answer::Then::Close},
                                         DropRow{"Reset", Answer::Then::Reset}),
                         [](const testing::TestParamInfo<DropRow>& info) {
                             return std::string(info.param.name);
                         });

TEST(TransportFaults, ConnectionClosedByTheServerWhileIdleIsReplacedSilently) {
    test::ConfigScope config;
    FaultServer server([](const FaultServer::Request& request) {
        Answer answer = FaultServer::echo(request);
        if (request.connection == 0 && request.index == 0)
            answer.closeAfterGate = true;
        return answer;
    });
    const QSharedPointer<RestClient> shared = client();
    ASSERT_EQ(perform(call(shared, server.url("/op"), 1)).reply, echoOf(1));
    server.openGate();
    ASSERT_TRUE(server.waitAfterGate());

    const Outcome second = perform(call(shared, server.url("/op"), 2));

    EXPECT_EQ(second.raised, Raised::Nothing) << second.message;
    EXPECT_EQ(second.reply, echoOf(2));
    EXPECT_EQ(server.requests(), 2);
    EXPECT_EQ(server.connections(), 2);
}

TEST(TransportFaults, ConnectionIdleLongerThanTheLimitIsNotUsedAgain) {
    test::ConfigScope config;
    FaultServer server(&FaultServer::echo);
    RestClient::Settings settings;
    settings.maxIdleMs = 0;
    const auto shared = QSharedPointer<RestClient>::create(settings);

    ASSERT_EQ(perform(call(shared, server.url("/op"), 1)).reply, echoOf(1));
    ASSERT_EQ(perform(call(shared, server.url("/op"), 2)).reply, echoOf(2));

    EXPECT_EQ(server.connections(), 2);
}

TEST(TransportFaults, KeptConnectionCarriesTheNextCallWhenNothingIsWrong) {
    test::ConfigScope config;
    FaultServer server(&FaultServer::echo);
    const QSharedPointer<RestClient> shared = client();

    for (int n = 1; n <= 5; ++n)
        ASSERT_EQ(perform(call(shared, server.url("/op"), n)).reply, echoOf(n));

    EXPECT_EQ(server.connections(), 1);
}

// Restores an environment variable when the scope ends.
class EnvironmentScope {
public:
    EnvironmentScope(const char* name, const QByteArray& value)
        : name_(name)
        , had_(qEnvironmentVariableIsSet(name))
        , previous_(qgetenv(name)) {
        qputenv(name, value);
    }
    ~EnvironmentScope() {
        if (had_)
            qputenv(name_, previous_);
        else
            qunsetenv(name_);
    }

private:
    const char* name_;
    bool had_;
    QByteArray previous_;
};

TEST(TransportFaults, ProxyInTheEnvironmentIsIgnored) {
    test::ConfigScope config;
    FaultServer server(&FaultServer::echo);
    FaultServer proxy(&FaultServer::echo);
    const QByteArray proxyUrl = proxy.url(QString()).toUtf8();
    const EnvironmentScope http("http_proxy", proxyUrl);
    const EnvironmentScope httpUpper("HTTP_PROXY", proxyUrl);
    const EnvironmentScope all("ALL_PROXY", proxyUrl);
    const EnvironmentScope allLower("all_proxy", proxyUrl);

    const Outcome outcome =
        perform(call(QSharedPointer<RestClient>::create(), server.url("/op"), 1));

    EXPECT_EQ(outcome.reply, echoOf(1));
    EXPECT_EQ(server.requests(), 1);
    EXPECT_EQ(proxy.connections(), 0);
}

TEST(TransportFaults, ConfiguredProxyCarriesTheCall) {
    FaultServer proxy(&FaultServer::echo);
    test::ConfigScope config({{"Network:proxy", proxy.url(QString())}});
    const QString target = QStringLiteral("http://backoffice.invalid:8080/op");

    const Outcome outcome = perform(call(QSharedPointer<RestClient>::create(), target, 1));

    EXPECT_EQ(outcome.reply, echoOf(1));
    ASSERT_EQ(proxy.received().size(), 1u);
    EXPECT_EQ(proxy.received()[0].target, target.toStdString());
}

TEST(TransportFaults, HostsOnTheNoProxyListAreReachedDirectly) {
    FaultServer server(&FaultServer::echo);
    FaultServer proxy(&FaultServer::echo);
    test::ConfigScope config(
        {{"Network:proxy", proxy.url(QString())}, {"Network:noProxy", "127.0.0.1"}});

    const Outcome outcome =
        perform(call(QSharedPointer<RestClient>::create(), server.url("/op"), 1));

    EXPECT_EQ(outcome.reply, echoOf(1));
    EXPECT_EQ(proxy.connections(), 0);
}

TEST(TransportFaults, TypedOperationRaisesTheSameAndTheServiceGoesOn) {
    FaultServer server([](const FaultServer::Request& request) {
        if (request.connection == 0 && request.index == 0)
            return bytes("", Answer::Then::Reset);
        return bytes(FaultServer::reply(200, R"({"barcode": "4601234000017", "price": 450})"));
    });
    test::ConfigScope config({{"Vesk.sales:url", server.url("/sales/")}});
    sales::Api api;
    sales::ItemInfoRequest request;
    request.barcode = QStringLiteral("4601234000017");

    EXPECT_THROW(api.itemInfo(request).response(), NetworkException);
    const auto& item = api.itemInfo(request).response();

    EXPECT_EQ(item.barcode, request.barcode);
    EXPECT_EQ(item.price, 450.0);
}

} // namespace
} // namespace vesk
