// A till's host compiled against the published layout of the library's
// classes (PublishedLayout.h), not against the library's headers: it takes
// the library's objects as its own, derives from a service client, catches
// the library's exceptions, and finds every field and virtual operation
// where the published layout puts it.

#include "PublishedLayout.h"

#include <morva/Config.h>

#include <gtest/gtest.h>

#include <cxxabi.h>
#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

// Answers every request with the response set last, and keeps the requests.
class ScriptedClient : public RestClient {
public:
    void send(const http::Request& request) override { sent.push_back(request); }
    http::Response response() override { return next; }

    void answer(int status, const QByteArray& body) {
        next = http::Response();
        next.statusCode = status;
        next.body = body;
    }
    void failWith(http::Response::Failure failure, const QString& message) {
        next = http::Response();
        next.failure = failure;
        next.error = tr::Tr(message);
    }

    std::vector<http::Request> sent;
    http::Response next;
};

// Storage for one T with guard bytes after it: whatever the library writes
// into an object that the host sized by the published layout must stay
// within that size.
template <class T>
class Guarded {
public:
    Guarded() { std::memset(bytes_, guardByte, sizeof bytes_); }
    void* place() { return bytes_; }
    T* get() { return std::launder(reinterpret_cast<T*>(bytes_)); }
    bool guardsIntact() const {
        return std::all_of(bytes_ + sizeof(T), bytes_ + sizeof bytes_,
                           [](unsigned char b) { return b == guardByte; });
    }

private:
    static constexpr unsigned char guardByte = 0xa5;
    alignas(T) unsigned char bytes_[sizeof(T) + 64];
};

const char* const salesBase = "http://127.0.0.1:9/till/sales";

class PublishedLayout : public testing::Test {
protected:
    static void SetUpTestSuite() {
        Config* config = Singleton<Config>::getInstance();
        config->setValue(QStringLiteral("Vesk.sales:url"), QString::fromLatin1(salesBase));
        config->setValue(QStringLiteral("Vesk.disc:url"), QStringLiteral("http://127.0.0.1:9/d/"));
        config->setValue(QStringLiteral("Vesk.loyalty:url"),
                         QStringLiteral("http://127.0.0.1:9/l/"));
        MockFactory<RestClient>::mocked = &client();
        Singleton<vesk::disc::Api>::getInstance();
        Singleton<vesk::loyalty::Api>::getInstance();
        Singleton<vesk::sales::Api>::getInstance();
    }
    static ScriptedClient& client() {
        static ScriptedClient* const instance = new ScriptedClient; // outlives the services
        return *instance;
    }
    static vesk::sales::Api& sales() { return *Singleton<vesk::sales::Api>::instance; }

    static vesk::sales::ItemInfoRequest anItem() {
        vesk::sales::ItemInfoRequest request;
        request.sectionId = QStringLiteral("S1");
        request.barcode = QStringLiteral("4601234000017");
        return request;
    }
};

TEST_F(PublishedLayout, TheServiceClientHoldsTheHttpClientAndTheBaseUrlAfterItsVirtualTable) {
    EXPECT_EQ(sales().client.data(), &client());
    EXPECT_EQ(sales().baseUrl, QUrl(QString::fromLatin1(salesBase) + QLatin1Char('/')));
    EXPECT_EQ(Singleton<vesk::disc::Api>::instance->baseUrl,
              QUrl(QStringLiteral("http://127.0.0.1:9/d/")));
    EXPECT_EQ(Singleton<vesk::loyalty::Api>::instance->client.data(), &client());
}

TEST_F(PublishedLayout, APreparedRequestHoldsUrlBodyClientAndAnEmptyResponseWithinItsSize) {
    Guarded<vesk::PreparedRequest<vesk::sales::ItemInfoResponse>> storage;
    auto* prepared = new (storage.place())
        vesk::PreparedRequest<vesk::sales::ItemInfoResponse>(sales().itemInfo(anItem()));

    EXPECT_TRUE(storage.guardsIntact());
    EXPECT_EQ(prepared->url, QStringLiteral("http://127.0.0.1:9/till/sales/itemInfo"));
    const QVariantMap body = prepared->body.toMap();
    EXPECT_EQ(body, (QVariantMap{{QStringLiteral("sectionId"), QStringLiteral("S1")},
                                 {QStringLiteral("barcode"), QStringLiteral("4601234000017")}}));
    EXPECT_EQ(prepared->client.data(), &client());
    EXPECT_FALSE(prepared->response.has_value());

    client().answer(200, R"({"name": "Milk", "price": 89.9})");
    const QVariantMap reply = prepared->getResponseVariant().toMap();
    EXPECT_EQ(reply.value(QStringLiteral("name")).toString(), QStringLiteral("Milk"));
    EXPECT_EQ(client().sent.back().url,
              QUrl(QStringLiteral("http://127.0.0.1:9/till/sales/itemInfo")));
    prepared->~PreparedRequest();
}

TEST_F(PublishedLayout, AServiceErrorIsCaughtAsTheLibrarysExceptionWithItsCodeAfterTheBasePart) {
    client().answer(500, R"({"code": 17, "userMsg": "Card blocked"})");
    try {
        sales().itemInfo(anItem()).getResponseVariant();
        FAIL() << "a 500 reply must raise vesk::Exception";
    } catch (const vesk::NetworkException&) {
        FAIL() << "a service error is not a network failure";
    } catch (const vesk::Exception& e) {
        EXPECT_EQ(e.codeField, 17);
        EXPECT_EQ(e.code(), 17);
        EXPECT_EQ(e.message().text(), QStringLiteral("Card blocked"));
        EXPECT_STREQ(e.what(), "Card blocked");
    }
}

TEST_F(PublishedLayout, ANetworkFailureIsCaughtAsTheNetworkExceptionAndAsItsBases) {
    client().failWith(http::Response::Failure::Network, QStringLiteral("No route to the till"));
    try {
        sales().itemInfo(anItem()).getResponseVariant();
        FAIL() << "a network failure must raise vesk::NetworkException";
    } catch (const vesk::NetworkException& e) {
        EXPECT_EQ(e.codeField, 0);
        EXPECT_EQ(e.message().text(), QStringLiteral("No route to the till"));
    }
    EXPECT_THROW(sales().itemInfo(anItem()).getResponseVariant(), vesk::Exception);
    EXPECT_THROW(sales().itemInfo(anItem()).getResponseVariant(), BasicException);
}

TEST_F(PublishedLayout, TheLibrarysExceptionsFitTheirPublishedSize) {
    Guarded<vesk::Exception> exception;
    auto* e = new (exception.place()) vesk::Exception(42, tr::Tr(QStringLiteral("Busy")));
    EXPECT_TRUE(exception.guardsIntact());
    EXPECT_EQ(e->codeField, 42);
    e->~Exception();

    Guarded<vesk::NetworkException> network;
    auto* n = new (network.place()) vesk::NetworkException(tr::Tr(QStringLiteral("Cut")));
    EXPECT_TRUE(network.guardsIntact());
    EXPECT_EQ(n->codeField, 0);
    n->~NetworkException();
}

// The host's own sales client: one operation answered by the till itself,
// the others left to the library.
class TillSales : public vesk::sales::Api {
public:
    vesk::PreparedRequest<vesk::sales::ItemInfoResponse>
    itemInfo(const vesk::sales::ItemInfoRequest& request) override {
        vesk::PreparedRequest<vesk::sales::ItemInfoResponse> prepared;
        prepared.url = QStringLiteral("http://127.0.0.1:9/till/cache/") + request.barcode;
        return prepared;
    }
};

TEST_F(PublishedLayout, AHostsOwnServiceClientOverridesOneOperationAndInheritsTheOthers) {
    Guarded<TillSales> storage;
    TillSales* till = new (storage.place()) TillSales;
    EXPECT_TRUE(storage.guardsIntact());
    vesk::sales::Api* api = till;

    EXPECT_EQ(api->itemInfo(anItem()).url,
              QStringLiteral("http://127.0.0.1:9/till/cache/4601234000017"));

    vesk::sales::ReserveChequeRequest reserve;
    reserve.chequeId = QStringLiteral("CHQ-1");
    reserve.storeId = QStringLiteral("ST-7");
    reserve.lines.append(
        {QStringLiteral("4601234000017"), QStringLiteral("S1"), QStringLiteral("SKU-1"), 1, 2.0});
    const auto reserved = api->reserveCheque(reserve);
    EXPECT_EQ(reserved.url, QStringLiteral("http://127.0.0.1:9/till/sales/reserveCheque"));
    const QVariantMap body = reserved.body.toMap();
    EXPECT_EQ(body.value(QStringLiteral("chequeId")).toString(), QStringLiteral("CHQ-1"));
    EXPECT_FALSE(body.contains(QStringLiteral("basketId")));
    const QVariantList lines = body.value(QStringLiteral("lines")).toList();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0].toMap().value(QStringLiteral("qty")).toDouble(), 2.0);
    EXPECT_EQ(lines[0].toMap().value(QStringLiteral("lineNum")).toInt(), 1);

    vesk::sales::UnreserveChequeRequest unreserve;
    unreserve.chequeId = QStringLiteral("CHQ-1");
    EXPECT_EQ(api->unreserveCheque(unreserve).url,
              QStringLiteral("http://127.0.0.1:9/till/sales/unreserveCheque"));
    EXPECT_EQ(till->client.data(), &client());
    till->~TillSales();
}

// The name of the function in slot `slot` of the virtual table of `object`.
template <class Object>
std::string slotFunction(const Object& object, std::size_t slot) {
    void* const* table = *reinterpret_cast<void* const* const*>(&object);
    Dl_info info{};
    if (!dladdr(table[slot], &info) || !info.dli_sname)
        return "(no symbol)";
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status), &std::free);
    return status == 0 ? name.get() : info.dli_sname;
}

// The slot of a virtual member function, from its pointer-to-member form
// (Itanium C++ ABI: 1 + the byte offset into the table).
template <class F>
std::size_t slotOf(F function) {
    static_assert(sizeof(F) == 2 * sizeof(std::ptrdiff_t));
    std::ptrdiff_t words[2];
    std::memcpy(words, &function, sizeof words);
    return std::size_t(words[0] - 1) / sizeof(void*);
}

// Each function named in `operations`, in that order, is in the next slot
// of the virtual table of `object`, from the first.
template <class Object>
void expectSlots(const Object& object, const std::string& owner,
                 const std::vector<std::string>& operations) {
    for (std::size_t slot = 0; slot < operations.size(); ++slot) {
        const std::string function = slotFunction(object, slot);
        EXPECT_EQ(function.rfind(owner + "::" + operations[slot] + "(", 0), 0u)
            << "slot " << slot << " holds " << function;
    }
}

TEST_F(PublishedLayout, EveryOperationIsInItsPublishedVirtualSlot) {
    // The host's compiler puts the operations in declared order from slot 0.
    EXPECT_EQ(slotOf(&vesk::sales::Api::itemInfo), 0u);
    EXPECT_EQ(slotOf(&vesk::sales::Api::reserveCheque), 1u);
    EXPECT_EQ(slotOf(&vesk::sales::Api::unreserveCheque), 2u);

    expectSlots(*Singleton<vesk::disc::Api>::instance, "vesk::disc::Api",
                {"discCalc", "discCalcPay", "getPublicityList"});
    expectSlots(*Singleton<vesk::loyalty::Api>::instance, "vesk::loyalty::Api",
                {"processId", "processPin", "getCardBalance", "calcBonusAmount",
                 "calcAndReserveBonusPay", "checkPin", "commitCheque", "getParkingInfo",
                 "cashierAdditionalInfo", "chequeAdditionalInfo"});
    expectSlots(sales(), "vesk::sales::Api", {"itemInfo", "reserveCheque", "unreserveCheque"});
}

} // namespace
