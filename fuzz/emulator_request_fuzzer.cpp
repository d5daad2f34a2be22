// A request body, whatever its bytes, at each of the emulator's sixteen
// operations, in process: the answer is always a JSON object with a status.

#include <emulator/DiscountService.h>
#include <emulator/HttpFront.h>
#include <emulator/LoyaltyService.h>
#include <emulator/SalesService.h>
#include <emulator/SeedData.h>
#include <emulator/Store.h>

#include <QLoggingCategory>

#include <cstdlib>

namespace {

using namespace vesk::emulator;

struct BackOffice {
    BackOffice() {
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.warning=false"));
        QString error;
        const auto text = SeedData::read(QString(), &error);
        seed = SeedData::shipped();
        if (!text || !store.open(QString(), &error))
            std::abort();
        store.transaction([&] { store.loadSeed(seed, *text); });
        sales = std::make_unique<SalesService>(store, seed);
        discount = std::make_unique<DiscountService>(store, seed);
        loyalty = std::make_unique<LoyaltyService>(store, seed);
        front = std::make_unique<HttpFront>(*sales, *discount, *loyalty);
    }
    Store store;
    SeedData seed;
    std::unique_ptr<SalesService> sales;
    std::unique_ptr<DiscountService> discount;
    std::unique_ptr<LoyaltyService> loyalty;
    std::unique_ptr<HttpFront> front;
};

const char* const operations[] = {"ExchangeData_Sales/itemInfo",
                                  "ExchangeData_Sales/reserveCheque",
                                  "ExchangeData_Sales/unreserveCheque",
                                  "ExchangeData_Disc/discCalc",
                                  "ExchangeData_Disc/discCalcPay",
                                  "ExchangeData_Disc/getPublicityList",
                                  "ExchangeData_Loyalty/processId",
                                  "ExchangeData_Loyalty/processPin",
                                  "ExchangeData_Loyalty/getCardBalance",
                                  "ExchangeData_Loyalty/calcBonusAmount",
                                  "ExchangeData_Loyalty/calcAndReserveBonusPay",
                                  "ExchangeData_Loyalty/checkPin",
                                  "ExchangeData_Loyalty/commitCheque",
                                  "ExchangeData_Loyalty/getParkingInfo",
                                  "ExchangeData_Loyalty/cashierAdditionalInfo",
                                  "ExchangeData_Loyalty/chequeAdditionalInfo"};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static BackOffice* const office = new BackOffice;
    if (size < 1)
        return 0;
    const std::string path =
        std::string("/api/axapta/") + operations[data[0] % std::size(operations)];
    const QByteArray body(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    const HttpFront::Answer answer = office->front->answer(path, body, HttpFront::ParsedBody(body));
    if (answer.status < 200 || answer.status > 599 ||
        (answer.status != 200 && !answer.object.contains(QLatin1String("code"))))
        __builtin_trap();
    return 0;
}
