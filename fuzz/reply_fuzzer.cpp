// A reply, whatever its bytes, through a prepared request of each operation:
// the status and the body come from the input; the call may only return a
// record or raise the library's exceptions.

#include "FuzzInput.h"

#include <QLoggingCategory>

namespace {

// Answers every request with the reply given last.
class Replay : public RestClient {
public:
    Replay()
        : RestClient(Settings()) {}
    void send(const http::Request&) override {}
    http::Response response() override { return reply; }
    http::Response reply;
};

const int statuses[] = {200, 200, 200, 400, 404, 500, 502, 201};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool quiet = [] {
        QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false"));
        return true;
    }();
    (void)quiet;
    if (size < 2)
        return 0;
    auto* replay = new Replay;
    replay->reply.statusCode = statuses[data[0] % std::size(statuses)];
    if (data[0] & 0x80) {
        replay->reply.failure =
            (data[0] & 0x40) ? http::Response::Failure::Content : http::Response::Failure::Network;
        replay->reply.error = tr::Tr(QStringLiteral("failed"));
    }
    replay->reply.body = vesk::fuzz::rest(data, size, 2);
    const QSharedPointer<RestClient> client(replay);

    vesk::fuzz::visitType<vesk::fuzz::Responses>(data[1], [&](auto* type) {
        using Response = std::remove_pointer_t<decltype(type)>;
        vesk::PreparedRequest<Response> call;
        call.url = QStringLiteral("http://127.0.0.1:55555/api/op");
        call.client = client;
        try {
            // What a host does next with the record: read it back as a body.
            serder::serialize(call.response());
        } catch (const vesk::Exception&) {
        }
    });
    return 0;
}
