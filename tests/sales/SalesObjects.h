#pragma once

// JSON objects of the sales service that set every member of a record at
// every depth, each to a value other than its default, for the record and
// operation tables.

#include <QByteArray>

namespace vesk::test::salesObjects {

inline QByteArray itemInfoRequest() {
    return R"({"sectionId": "SEC-3", "barcode": "4601234567890"})";
}

inline QByteArray itemInfoResponse() {
    return R"({"barcode": "4601234567890", "barcodeType": 2, "price": 1299.5,)"
           R"( "priceGroupId": "PG-1", "skuId": "SKU-77", "name": "Linen shirt",)"
           R"( "article": "ART-5", "itemId": "IT-100", "colorId": "BLUE", "sizeId": "M",)"
           R"( "unitId": "pcs", "groupId": "GR-4", "countryCode": "643", "vendorId": "V-12",)"
           R"( "properties": 5})";
}

inline QByteArray reserveLinesEntryRequest() {
    return R"({"barcode": "4601234567890", "sectionId": "SEC-3", "skuId": "SKU-77",)"
           R"( "lineNum": 2, "qty": 1.5})";
}

inline QByteArray reserveLinesEntryResponse() {
    return R"({"barcode": "4601234567890", "sectionId": "SEC-3", "skuId": "SKU-77",)"
           R"( "lineNum": 2, "price": 1299.5, "qty": 1.5, "taxCode": "VAT20",)"
           R"( "vendorId": "V-12", "existWithoutReservation": true,)"
           R"( "qtyWithoutReservation": 0.5,)"
           R"( "withoutReservationMessage": "Half a metre is on the shelf"})";
}

inline QByteArray reserveChequeRequest() {
    return R"({"chequeId": "CH-42", "storeId": "S-17", "basketId": "B-8",)"
           R"( "includeFirstRetailPrice": true, "lines": [)" +
           reserveLinesEntryRequest() + "]}";
}

inline QByteArray reserveChequeResponse() {
    return R"({"chequeId": "CH-42", "basketId": "B-8", "lines": [)" + reserveLinesEntryResponse() +
           "]}";
}

inline QByteArray unreserveChequeRequest() {
    return R"({"chequeId": "CH-42"})";
}

inline QByteArray unreserveChequeResponse() {
    return R"({"chequeId": "CH-42"})";
}

} // namespace vesk::test::salesObjects
