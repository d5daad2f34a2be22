// An example host: serves a discount calculation on a loopback port, points
// the discount client at it, and performs calls through the library: a
// success, a service error and a network failure.

#include <vesk/vesk.h>

#include <httplib.h>

#include <QJsonDocument>
#include <QLoggingCategory>

#include <cstdio>
#include <thread>

namespace {

const char* const discountReply = R"({"chequeId": "A-1001", "calcDateTime": "2026-11-20T10:00:00",
  "lines": [{"lineNum": 1, "discounts": [{"discId": "CARD5", "card": "2775000012345678",
  "complectId": 0, "discUnit": 4.95, "discQty": 1, "description": "5% for the card holder"}]}]})";

QString pretty(const QVariant& map) {
    return QString::fromUtf8(QJsonDocument::fromVariant(map).toJson(QJsonDocument::Indented));
}

vesk::PreparedRequestBase prepare(const vesk::disc::Api& api, const char* endpoint,
                                  const QVariantMap& body) {
    vesk::PreparedRequestBase call;
    call.url = api.baseUrl().resolved(QUrl(QString::fromLatin1(endpoint))).toString();
    call.body = body;
    call.client = api.restClient();
    return call;
}

void perform(const char* title, const vesk::PreparedRequestBase& call) {
    std::printf("\n== %s\nPOST %s\n", title, qPrintable(call.url));
    try {
        std::printf("reply:\n%s", qPrintable(pretty(call.getResponseVariant())));
    } catch (const vesk::NetworkException& e) {
        std::printf("network failure: %s\n", e.what());
    } catch (const vesk::Exception& e) {
        std::printf("service error %d: %s\n", e.code(), e.what());
    }
}

} // namespace

int main() {
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // keep our lines in order with the log's
    httplib::Server server;
    server.set_tcp_nodelay(true);
    server.Post("/api/axapta/ExchangeData_Disc/discCalc",
                [](const httplib::Request& request, httplib::Response& response) {
                    std::printf("server received: %s\n", request.body.c_str());
                    response.set_content(discountReply, "application/json");
                });
    server.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        response.set_content(R"({"code": 404, "userMsg": "Unknown operation"})",
                             "application/json");
    });
    const int port = server.bind_to_any_port("127.0.0.1");
    if (port <= 0) {
        std::fprintf(stderr, "cannot listen on the loopback address\n");
        return 1;
    }
    // Bound and listening already: calls made before the thread runs wait in the backlog.
    std::thread serving([&server] { server.listen_after_bind(); });

    // The host's configuration, as a till's INI file would give it.
    Singleton<Config>::getInstance()->setValue(
        QStringLiteral("Vesk.disc:url"),
        QStringLiteral("http://127.0.0.1:%1/api/axapta/ExchangeData_Disc").arg(port));
    QLoggingCategory::setFilterRules(QStringLiteral("veskdisc.info=true\nveskdisc.debug=true"));

    const vesk::disc::Api& api = *vesk::disc::Api::getInstance();
    std::printf("discount service at %s\n", qPrintable(api.baseUrl().toString()));

    const QVariantMap cheque{
        {"chequeId", "A-1001"},
        {"calcDateTime", "2026-11-20T10:00:00"},
        {"storeId", "S01"},
        {"salesChannel", 1},
        {"cardList", QVariantList{QVariantMap{{"card", "2775000012345678"}}}},
        {"lines",
         QVariantList{QVariantMap{
             {"lineNum", 1}, {"barcode", "4600000000017"}, {"retailPrice", 99.0}, {"qty", 1.0}}}}};
    perform("discount calculation", prepare(api, "./discCalc", cheque));
    perform("an operation the server does not know", prepare(api, "./noSuchOperation", cheque));

    vesk::PreparedRequestBase unreachable;
    unreachable.url = QStringLiteral("http://127.0.0.1:1/api/axapta/ExchangeData_Disc/discCalc");
    unreachable.body = cheque;
    perform("a service that is not there", unreachable);

    server.stop();
    serving.join();
    return 0;
}
