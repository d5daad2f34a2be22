#include "DiscountService.h"

#include "ServiceError.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace vesk::emulator {

namespace {

ServiceError invalid(const QString& why) {
    return ServiceError(400, code::discountInvalid, why);
}

Cents entryAmount(const disc::DiscountsEntryResponse& entry) {
    return lineAmount(toCents(entry.discUnit), entry.discQty);
}

bool selected(const SeedPromotion& promotion, const QStringList& publicities) {
    return publicities.isEmpty() || publicities.contains(promotion.id);
}

disc::DiscountsEntryResponse discountEntry(const SeedPromotion& promotion, const QString& card,
                                           Cents unit, double qty) {
    disc::DiscountsEntryResponse entry;
    entry.discId = promotion.id;
    entry.card = card;
    entry.complectId = promotion.kind == SeedPromotion::Kind::Set ? promotion.complectId : 0;
    entry.discUnit = fromCents(unit);
    entry.discQty = qty;
    entry.description = promotion.name;
    return entry;
}

void checkLines(const QList<disc::LinesEntryRequest>& lines) {
    for (const disc::LinesEntryRequest& line : lines) {
        if (!isValidQuantity(line.qty))
            throw invalid(QStringLiteral("Line %1: the quantity must be more than 0 and at most %2")
                              .arg(line.lineNum)
                              .arg(maxQuantity, 0, 'f', 0));
        if (!isValidAmount(line.retailPrice))
            throw invalid(QStringLiteral("Line %1: the retail price must be from 0 to %2")
                              .arg(line.lineNum)
                              .arg(maxAmount, 0, 'f', 0));
    }
}

} // namespace

struct DiscountService::Calculation {
    QList<disc::LinesEntryResponse> lines;
    QList<Cents> nets; // each line's amount after its discounts
    Cents netTotal = 0;
    QSet<QString> applied; // the promotions that gave a discount
};

DiscountService::DiscountService(Store& store, const SeedData& seed)
    : store_(store)
    , seed_(seed) {}

QList<Store::Card> DiscountService::knownCards(const QList<disc::CardListEntry>& cards) {
    return store_.transaction([&] {
        QList<Store::Card> known;
        for (const disc::CardListEntry& entry : cards)
            if (entry.card && !entry.card->isEmpty())
                if (const std::optional<Store::Card> card = store_.card(*entry.card))
                    known.append(*card);
        return known;
    });
}

DiscountService::Calculation DiscountService::calculate(const QList<disc::CardListEntry>& cards,
                                                        const QList<disc::LinesEntryRequest>& lines,
                                                        const QStringList& publicities) {
    checkLines(lines);
    const QList<Store::Card> known = knownCards(cards);

    Calculation result;
    for (const disc::LinesEntryRequest& line : lines) {
        disc::LinesEntryResponse out;
        out.lineNum = line.lineNum;
        result.lines.append(out);
    }

    for (const SeedPromotion& promotion : seed_.promotions) {
        if (!selected(promotion, publicities))
            continue;
        if (promotion.kind == SeedPromotion::Kind::Card) {
            const auto card = std::find_if(known.begin(), known.end(), [&](const Store::Card& c) {
                return promotion.cardTypes.contains(c.cardType);
            });
            if (card == known.end())
                continue;
            for (qsizetype i = 0; i < lines.size(); ++i) {
                const Cents unit = percentOf(toCents(lines[i].retailPrice), promotion.percent);
                if (unit <= 0)
                    continue;
                result.lines[i].discounts.append(
                    discountEntry(promotion, card->card, unit, lines[i].qty));
                result.applied.insert(promotion.id);
            }
        } else if (promotion.kind == SeedPromotion::Kind::Set) {
            // Complete sets: the fewest whole units of any of the set's barcodes.
            QHash<QString, Milli> totals;
            for (const disc::LinesEntryRequest& line : lines)
                totals[line.barcode] += toMilli(line.qty);
            Milli sets = -1;
            for (const QString& barcode : promotion.barcodes) {
                const Milli whole = totals.value(barcode) / 1000;
                sets = sets < 0 ? whole : std::min(sets, whole);
            }
            if (sets <= 0)
                continue;
            for (const QString& barcode : promotion.barcodes) {
                Milli left = sets * 1000;
                for (qsizetype i = 0; i < lines.size() && left > 0; ++i) {
                    if (lines[i].barcode != barcode)
                        continue;
                    const Milli take = std::min(left, toMilli(lines[i].qty));
                    left -= take;
                    const Cents unit = percentOf(toCents(lines[i].retailPrice), promotion.percent);
                    if (unit <= 0 || take <= 0)
                        continue;
                    result.lines[i].discounts.append(
                        discountEntry(promotion, QString(), unit, fromMilli(take)));
                    result.applied.insert(promotion.id);
                }
            }
        }
    }

    for (qsizetype i = 0; i < lines.size(); ++i) {
        Cents net = lineAmount(toCents(lines[i].retailPrice), lines[i].qty);
        for (const disc::DiscountsEntryResponse& entry : result.lines[i].discounts)
            net -= entryAmount(entry);
        net = std::max<Cents>(net, 0);
        result.nets.append(net);
        result.netTotal += net;
    }
    return result;
}

disc::DiscCalcResponse DiscountService::discCalc(const disc::DiscCalcRequest& request) {
    const Calculation calculation = calculate(request.cardList, request.lines, request.publicities);
    disc::DiscCalcResponse response;
    response.chequeId = request.chequeId;
    response.calcDateTime = request.calcDateTime;
    response.lines = calculation.lines;
    return response;
}

disc::DiscCalcPayResponse DiscountService::discCalcPay(const disc::DiscCalcPayRequest& request) {
    for (const disc::PaymentsEntryRequest& payment : request.payments)
        if (!isValidAmount(payment.amount))
            throw invalid(QStringLiteral("Payment %1: the amount must be from 0 to %2")
                              .arg(payment.payLineNum)
                              .arg(maxAmount, 0, 'f', 0));
    Calculation calculation = calculate(request.cardList, request.lines, request.publicities);

    disc::DiscCalcPayResponse response;
    response.chequeId = request.chequeId;
    response.calcDateTime = request.calcDateTime;
    for (const disc::PaymentsEntryRequest& payment : request.payments) {
        disc::PaymentsEntryResponse out;
        out.payLineNum = payment.payLineNum;
        out.code = payment.code;
        out.card = payment.card;
        out.amount = payment.amount;
        Cents discount = 0;
        const auto promotion =
            std::find_if(seed_.promotions.begin(), seed_.promotions.end(), [&](const auto& p) {
                return p.kind == SeedPromotion::Kind::Payment &&
                       p.payCodes.contains(payment.code) && selected(p, request.publicities) &&
                       calculation.netTotal >= p.minTotal;
            });
        if (promotion != seed_.promotions.end()) {
            const Cents base = std::min(toCents(payment.amount), calculation.netTotal);
            discount = percentOf(base, promotion->percent);
            const QList<Cents> shares = distribute(discount, calculation.nets);
            for (qsizetype i = 0; i < shares.size(); ++i) {
                if (shares[i] <= 0)
                    continue;
                disc::DiscountsEntryResponse entry =
                    discountEntry(*promotion, payment.card.value_or(QString()), shares[i], 1);
                entry.payLineNum = payment.payLineNum;
                entry.payCode = payment.code;
                calculation.lines[i].discounts.append(entry);
            }
        }
        out.discAmount = fromCents(discount);
        out.payAmount = fromCents(toCents(payment.amount) - discount);
        response.payments.append(out);
    }
    response.lines = calculation.lines;
    return response;
}

disc::GetPublicityListResponse
DiscountService::getPublicityList(const disc::GetPublicityListRequest& request) {
    const Calculation calculation = calculate(request.cardList, request.lines, QStringList());
    const auto entry = [](const SeedPromotion& promotion) {
        disc::PublicitiesEntry out;
        out.publicityId = promotion.id;
        out.publicityName = promotion.name;
        out.publicityDescription = promotion.description;
        out.publicityType = promotion.type;
        out.publicityAmount = static_cast<int>(std::lround(promotion.percent));
        return out;
    };
    QList<disc::PublicitiesEntry> automatic;
    QList<disc::PublicitiesEntry> withPayment;
    for (const SeedPromotion& promotion : seed_.promotions) {
        if (promotion.kind == SeedPromotion::Kind::Payment) {
            if (!request.lines.isEmpty() && calculation.netTotal >= promotion.minTotal)
                withPayment.append(entry(promotion));
        } else if (calculation.applied.contains(promotion.id)) {
            automatic.append(entry(promotion));
        }
    }
    disc::GetPublicityListResponse response;
    if (!automatic.isEmpty()) {
        disc::VariantsEntry variant;
        variant.variantNum = 1;
        variant.publicities = automatic;
        response.variants.append(variant);
    }
    if (!withPayment.isEmpty()) {
        disc::VariantsEntry variant;
        variant.variantNum = response.variants.size() + 1;
        variant.publicities = automatic + withPayment;
        response.variants.append(variant);
    }
    return response;
}

} // namespace vesk::emulator
