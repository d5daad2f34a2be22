#include "Cheques.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace vesk::bench {

disc::DiscCalcRequest cheque(int lines) {
    disc::DiscCalcRequest request;
    disc::CardListEntry card;
    card.card = QStringLiteral("2775000000011");
    card.partnerId = 1;
    request.cardList = {card};
    request.chequeId = QStringLiteral("CHQ-1001");
    request.calcDateTime = QStringLiteral("2026-11-23T10:00:00");
    request.salesChannel = 1;
    request.storeId = QStringLiteral("S01");
    for (int n = 1; n <= lines; ++n) {
        disc::LinesEntryRequest line;
        line.barcode = QStringLiteral("46012340%1").arg(n, 5, 10, QLatin1Char('0'));
        line.skuId = QStringLiteral("SKU-%1").arg(n);
        line.lineNum = n;
        line.locationId = QStringLiteral("HALL");
        line.retailPrice = 100.0 + n * 0.5;
        line.qty = 1 + n % 3;
        disc::DiscountsEntryRequest discount;
        discount.discId = QStringLiteral("MANUAL");
        discount.discUnit = 5.25;
        discount.discQty = line.qty;
        line.discounts = {discount};
        request.lines.append(line);
    }
    return request;
}

QByteArray reply(int lines) {
    QJsonArray array;
    for (int n = 1; n <= lines; ++n) {
        QJsonArray discounts;
        for (int d = 0; d < 2; ++d) {
            discounts.append(QJsonObject{
                {QStringLiteral("discId"), d ? QStringLiteral("SET10") : QStringLiteral("GOLD5")},
                {QStringLiteral("card"), QStringLiteral("2775000000011")},
                {QStringLiteral("complectId"), d},
                {QStringLiteral("discUnit"), 12.5 + n},
                {QStringLiteral("discQty"), 1 + n % 3},
                {QStringLiteral("description"), QStringLiteral("5% for GOLD card holders")}});
        }
        array.append(
            QJsonObject{{QStringLiteral("lineNum"), n}, {QStringLiteral("discounts"), discounts}});
    }
    return QJsonDocument(
               QJsonObject{{QStringLiteral("chequeId"), QStringLiteral("CHQ-1001")},
                           {QStringLiteral("calcDateTime"), QStringLiteral("2026-11-23T10:00:00")},
                           {QStringLiteral("lines"), array}})
        .toJson(QJsonDocument::Compact);
}

} // namespace vesk::bench
