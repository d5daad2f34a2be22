#include "SalesService.h"

#include "ServiceError.h"

#include <QSet>

#include <algorithm>

namespace vesk::emulator {

namespace {

ServiceError invalid(const QString& why) {
    return ServiceError(400, code::salesInvalid, why);
}

ServiceError unknownBarcode(const QString& barcode) {
    return ServiceError(404, code::unknownBarcode,
                        QStringLiteral("No item with barcode \"%1\"").arg(barcode));
}

QString formatQty(Milli qty) {
    return QString::number(fromMilli(qty), 'g', 10);
}

} // namespace

SalesService::SalesService(Store& store, const SeedData& seed)
    : store_(store)
    , seed_(seed) {}

sales::ItemInfoResponse SalesService::itemInfo(const sales::ItemInfoRequest& request) {
    const std::optional<Store::Item> item =
        store_.transaction([&] { return store_.item(request.barcode); });
    if (!item)
        throw unknownBarcode(request.barcode);
    sales::ItemInfoResponse response;
    response.barcode = item->barcode;
    response.barcodeType = item->barcodeType;
    response.price = fromCents(item->price);
    response.priceGroupId = item->priceGroupId;
    response.skuId = item->skuId;
    response.name = item->name;
    response.article = item->article;
    response.itemId = item->itemId;
    response.colorId = item->colorId;
    response.sizeId = item->sizeId;
    response.unitId = item->unitId;
    response.groupId = item->groupId;
    response.countryCode = item->countryCode;
    response.vendorId = item->vendorId;
    response.properties = item->properties;
    return response;
}

sales::ReserveChequeResponse
SalesService::reserveCheque(const sales::ReserveChequeRequest& request) {
    if (request.chequeId.isEmpty())
        throw invalid(QStringLiteral("chequeId is empty"));
    QSet<int> lineNums;
    for (const sales::ReserveLinesEntryRequest& line : request.lines) {
        if (!isValidQuantity(line.qty))
            throw invalid(QStringLiteral("Line %1: the quantity must be more than 0 and at most %2")
                              .arg(line.lineNum)
                              .arg(maxQuantity, 0, 'f', 0));
        if (lineNums.contains(line.lineNum))
            throw invalid(QStringLiteral("Line number %1 appears twice").arg(line.lineNum));
        lineNums.insert(line.lineNum);
    }

    return store_.transaction([&] {
        // What the cheque held goes back first, so a new reservation can use it.
        if (const auto previous = store_.reservation(request.chequeId))
            for (const Store::ReservedLine& line : *previous)
                store_.addStock(line.sectionId, line.barcode, line.qty);

        sales::ReserveChequeResponse response;
        response.chequeId = request.chequeId;
        response.basketId = request.basketId;
        QList<Store::ReservedLine> reserved;
        for (const sales::ReserveLinesEntryRequest& line : request.lines) {
            const std::optional<Store::Item> item = store_.item(line.barcode);
            if (!item)
                throw unknownBarcode(line.barcode);
            const QString section =
                line.sectionId.isEmpty() ? seed_.defaultSection : line.sectionId;
            const Milli wanted = toMilli(line.qty);
            const Milli available = std::max<Milli>(store_.stock(section, line.barcode), 0);
            const Milli taken = std::min(wanted, available);
            store_.addStock(section, line.barcode, -taken);
            reserved.append({line.lineNum, line.barcode, section, taken});

            sales::ReserveLinesEntryResponse out;
            out.barcode = line.barcode;
            out.sectionId = section;
            out.skuId = line.skuId.isEmpty() ? item->skuId : line.skuId;
            out.lineNum = line.lineNum;
            out.price = fromCents(item->price);
            out.qty = fromMilli(taken);
            out.taxCode = item->taxCode;
            out.vendorId = item->vendorId;
            out.existWithoutReservation = taken < wanted;
            if (taken < wanted) {
                out.qtyWithoutReservation = fromMilli(wanted - taken);
                out.withoutReservationMessage =
                    QStringLiteral(
                        "Only %1 of %2 of \"%3\" in stock in section %4: %5 not reserved")
                        .arg(formatQty(taken), formatQty(wanted), item->name, section,
                             formatQty(wanted - taken));
            }
            response.lines.append(out);
        }
        store_.saveReservation(request.chequeId, request.storeId, reserved);
        return response;
    });
}

sales::UnreserveChequeResponse
SalesService::unreserveCheque(const sales::UnreserveChequeRequest& request) {
    store_.transaction([&] {
        const auto reservation = store_.reservation(request.chequeId);
        if (!reservation)
            throw ServiceError(
                404, code::unknownReservation,
                QStringLiteral("No reservation for cheque \"%1\"").arg(request.chequeId));
        for (const Store::ReservedLine& line : *reservation)
            store_.addStock(line.sectionId, line.barcode, line.qty);
        store_.dropReservation(request.chequeId);
    });
    sales::UnreserveChequeResponse response;
    response.chequeId = request.chequeId;
    return response;
}

} // namespace vesk::emulator
