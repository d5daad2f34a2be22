#include "OperationNames.h"

#include <QHash>

namespace vesk::testing::detail {

QString serviceOf(const QString& operation) {
    // The endpoints that the clients' operations resolve against their
    // services' base URLs.
    static const QHash<QString, QString> services = [] {
        const struct {
            const char* service;
            std::initializer_list<const char*> operations;
        } table[] = {
            {"disc", {"discCalc", "discCalcPay", "getPublicityList"}},
            {"loyalty",
             {"processId", "processPin", "getCardBalance", "calcBonusAmount",
              "calcAndReserveBonusPay", "checkPin", "commitCheque", "getParkingInfo",
              "cashierAdditionalInfo", "chequeAdditionalInfo"}},
            {"sales", {"itemInfo", "reserveCheque", "unreserveCheque"}},
        };
        QHash<QString, QString> byOperation;
        for (const auto& row : table) {
            for (const char* name : row.operations)
                byOperation.insert(QString::fromLatin1(name), QString::fromLatin1(row.service));
        }
        return byOperation;
    }();
    return services.value(operation);
}

} // namespace vesk::testing::detail
