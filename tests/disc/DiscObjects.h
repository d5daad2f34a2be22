#pragma once

// JSON objects of the discount service that set every member of a record at
// every depth, each to a value other than its default, for the record and
// operation tables.

#include <QByteArray>

namespace vesk::test::discObjects {

inline QByteArray cardListEntry() {
    return R"({"card": "4000001234567890", "partnerId": 7})";
}

inline QByteArray discountsEntryRequest() {
    return R"({"discId": "D-10", "card": "4000001234567890", "complectId": 3,)"
           R"( "discUnit": 12.5, "discQty": 1.25})";
}

inline QByteArray extraDataLineEntry() {
    return R"({"key": "colour", "value": "red"})";
}

inline QByteArray linesEntryRequest() {
    return R"({"barcode": "4601234567890", "colorId": "RED", "itemId": "IT-100",)"
           R"( "sizeId": "XL", "skuId": "SKU-1", "discounts": [)" +
           discountsEntryRequest() +
           R"(], "lineNum": 1, "locationId": "LOC-2", "retailPrice": 199.99,)"
           R"( "qty": 2.5, "extraDataLine": [)" +
           extraDataLineEntry() + "]}";
}

inline QByteArray paymentsEntryRequest() {
    return R"({"payLineNum": 1, "code": 4, "card": "5500001111", "amount": 250.75})";
}

inline QByteArray discCalcRequest() {
    return R"({"cardList": [)" + cardListEntry() +
           R"(], "chequeId": "CH-42", "calcDateTime": "2024-05-01T12:30:00", "lines": [)" +
           linesEntryRequest() +
           R"(], "publicities": ["P-1", "P-2"], "salesChannel": 2, "storeId": "S-17"})";
}

inline QByteArray discCalcPayRequest() {
    return R"({"cardList": [)" + cardListEntry() +
           R"(], "chequeId": "CH-42", "calcDateTime": "2024-05-01T12:30:00", "lines": [)" +
           linesEntryRequest() + R"(], "payments": [)" + paymentsEntryRequest() +
           R"(], "publicities": ["P-1", "P-2"], "salesChannel": 2, "storeId": "S-17"})";
}

inline QByteArray discountsEntryResponse() {
    return R"({"discId": "D-11", "card": "4000001234567890", "complectId": 5,)"
           R"( "payLineNum": 1, "payCode": 4, "discUnit": 20.25, "discQty": 1.5,)"
           R"( "description": "Spring sale"})";
}

inline QByteArray linesEntryResponse() {
    return R"({"discounts": [)" + discountsEntryResponse() + R"(], "lineNum": 1})";
}

inline QByteArray paymentsEntryResponse() {
    return R"({"payLineNum": 1, "code": 4, "card": "5500001111", "amount": 250.75,)"
           R"( "discAmount": 20.25, "payAmount": 230.5})";
}

inline QByteArray discCalcResponse() {
    return R"({"chequeId": "CH-42", "calcDateTime": "2024-05-01T12:30:05", "lines": [)" +
           linesEntryResponse() + "]}";
}

inline QByteArray discCalcPayResponse() {
    return R"({"chequeId": "CH-42", "calcDateTime": "2024-05-01T12:30:05", "lines": [)" +
           linesEntryResponse() + R"(], "payments": [)" + paymentsEntryResponse() + "]}";
}

inline QByteArray getPublicityListRequest() {
    return R"({"cardList": [)" + cardListEntry() +
           R"(], "dataId": "DATA-9", "dateTime": "2024-05-01T12:31:00", "extraData": [)" +
           extraDataLineEntry() + R"(], "lines": [)" + linesEntryRequest() +
           R"(], "orderDateTime": "2024-04-30T18:00:00", "salesChannel": 3, "shopNum": 117,)"
           R"( "token": "tok-abc"})";
}

inline QByteArray publicitiesEntry() {
    return R"({"publicityId": "PUB-1", "publicityName": "Two for one",)"
           R"( "publicityDescription": "Second item free", "publicityType": 2,)"
           R"( "publicityAmount": 150})";
}

inline QByteArray variantsEntry() {
    return R"({"publicities": [)" + publicitiesEntry() + R"(], "variantNum": 1})";
}

inline QByteArray getPublicityListResponse() {
    return R"({"variants": [)" + variantsEntry() + "]}";
}

} // namespace vesk::test::discObjects
