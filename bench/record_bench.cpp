// Cost of the record machinery: a discount cheque turned into a body and a
// reply turned into a record, each against a hand-written mapping of the same
// data as the baseline.

#include <vesk/vesk.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>

namespace {

vesk::disc::DiscCalcRequest cheque(int lineCount) {
    vesk::disc::DiscCalcRequest request;
    request.chequeId = QStringLiteral("A-1001");
    request.calcDateTime = QStringLiteral("2026-11-20T10:00:00");
    request.storeId = QStringLiteral("S01");
    vesk::disc::CardListEntry card;
    card.card = QStringLiteral("2775000012345678");
    request.cardList = {card};
    for (int i = 0; i < lineCount; ++i) {
        vesk::disc::LinesEntryRequest line;
        line.lineNum = i + 1;
        line.barcode = QStringLiteral("46000000%1").arg(i, 5, 10, QLatin1Char('0'));
        line.itemId = QStringLiteral("IT%1").arg(i);
        line.locationId = QStringLiteral("L1");
        line.retailPrice = 99.9 + i;
        line.qty = 1 + i % 3;
        request.lines.append(line);
    }
    return request;
}

// What a hand-written mapping of the same cheque would build.
QVariantMap chequeByHand(const vesk::disc::DiscCalcRequest& request) {
    QVariantList cards;
    for (const auto& card : request.cardList) {
        QVariantMap map;
        if (card.card)
            map.insert(QStringLiteral("card"), *card.card);
        if (card.partnerId)
            map.insert(QStringLiteral("partnerId"), *card.partnerId);
        cards.append(map);
    }
    QVariantList lines;
    for (const auto& line : request.lines) {
        QVariantMap map{{QStringLiteral("barcode"), line.barcode},
                        {QStringLiteral("discounts"), QVariantList()},
                        {QStringLiteral("lineNum"), line.lineNum},
                        {QStringLiteral("locationId"), line.locationId},
                        {QStringLiteral("retailPrice"), line.retailPrice},
                        {QStringLiteral("qty"), line.qty},
                        {QStringLiteral("extraDataLine"), QVariantList()}};
        if (line.itemId)
            map.insert(QStringLiteral("itemId"), *line.itemId);
        lines.append(map);
    }
    return {{QStringLiteral("cardList"), cards},
            {QStringLiteral("chequeId"), request.chequeId},
            {QStringLiteral("calcDateTime"), request.calcDateTime},
            {QStringLiteral("lines"), lines},
            {QStringLiteral("publicities"), request.publicities},
            {QStringLiteral("salesChannel"), request.salesChannel},
            {QStringLiteral("storeId"), request.storeId}};
}

QVariant discountReply(int lineCount) {
    QVariantList lines;
    for (int i = 0; i < lineCount; ++i) {
        const QVariantMap discount{{"discId", "CARD5"}, {"card", "2775000012345678"},
                                   {"complectId", 0},   {"discUnit", 4.95},
                                   {"discQty", 1.0},    {"description", "5% for the card"}};
        lines.append(QVariantMap{{"lineNum", i + 1}, {"discounts", QVariantList{discount}}});
    }
    return QVariantMap{
        {"chequeId", "A-1001"}, {"calcDateTime", "2026-11-20T10:00:00"}, {"lines", lines}};
}

void serialiseCheque(benchmark::State& state) {
    const auto request = cheque(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(serder::serialize(request));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(serialiseCheque)->Arg(1)->Arg(10)->Arg(100);

void serialiseChequeByHand(benchmark::State& state) {
    const auto request = cheque(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(chequeByHand(request));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(serialiseChequeByHand)->Arg(1)->Arg(10)->Arg(100);

void readDiscountReply(benchmark::State& state) {
    const QVariant reply = discountReply(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(serder::deserialize<vesk::disc::DiscCalcResponse>(reply));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readDiscountReply)->Arg(1)->Arg(10)->Arg(100);

void chequeToWireJson(benchmark::State& state) {
    const auto request = cheque(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const QVariant body = serder::serialize(request);
        benchmark::DoNotOptimize(QJsonDocument(QJsonObject::fromVariantMap(body.toMap()))
                                     .toJson(QJsonDocument::Compact));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(chequeToWireJson)->Arg(1)->Arg(10)->Arg(100);

void compareCheques(benchmark::State& state) {
    const auto a = cheque(static_cast<int>(state.range(0)));
    const auto b = cheque(static_cast<int>(state.range(0))); // no shared list data
    for (auto _ : state)
        benchmark::DoNotOptimize(a == b);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(compareCheques)->Arg(1)->Arg(10)->Arg(100);

} // namespace
