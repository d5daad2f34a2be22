// Cost of the record machinery: a discount cheque turned into a body and a
// reply turned into a record, each against a hand-written mapping of the same
// data as the baseline.

#include "Cheques.h"

#include <vesk/vesk.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>

namespace {

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
        QVariantList discounts;
        for (const auto& discount : line.discounts) {
            QVariantMap entry;
            if (discount.discId)
                entry.insert(QStringLiteral("discId"), *discount.discId);
            if (discount.discUnit)
                entry.insert(QStringLiteral("discUnit"), *discount.discUnit);
            if (discount.discQty)
                entry.insert(QStringLiteral("discQty"), *discount.discQty);
            discounts.append(entry);
        }
        QVariantMap map{{QStringLiteral("barcode"), line.barcode},
                        {QStringLiteral("discounts"), discounts},
                        {QStringLiteral("lineNum"), line.lineNum},
                        {QStringLiteral("locationId"), line.locationId},
                        {QStringLiteral("retailPrice"), line.retailPrice},
                        {QStringLiteral("qty"), line.qty},
                        {QStringLiteral("extraDataLine"), QVariantList()}};
        if (line.skuId)
            map.insert(QStringLiteral("skuId"), *line.skuId);
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
    return QJsonDocument::fromJson(vesk::bench::reply(lineCount)).toVariant();
}

void serialiseCheque(benchmark::State& state) {
    const auto request = vesk::bench::cheque(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(serder::serialize(request));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(serialiseCheque)->Arg(1)->Arg(10)->Arg(100);

void serialiseChequeByHand(benchmark::State& state) {
    const auto request = vesk::bench::cheque(static_cast<int>(state.range(0)));
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

void compareCheques(benchmark::State& state) {
    const auto a = vesk::bench::cheque(static_cast<int>(state.range(0)));
    const auto b = vesk::bench::cheque(static_cast<int>(state.range(0))); // no shared list data
    for (auto _ : state)
        benchmark::DoNotOptimize(a == b);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(compareCheques)->Arg(1)->Arg(10)->Arg(100);

} // namespace
