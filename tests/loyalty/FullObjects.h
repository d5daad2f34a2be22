#pragma once

// JSON objects of the loyalty service that set every member of a record, at
// every depth, each with a value other than the member's default. The record
// tests read and write them back; the client tests post and answer them.

#include <QByteArray>

namespace vesk::loyalty::test {

inline QByteArray firstAccountJson() {
    return R"({"balance": 150.5, "codeAccount": 3, "confirmedAmount": 20.25,)"
           R"( "maxPay": 100.75, "minPay": 1.5, "presentAccountType": 2,)"
           R"( "presentCodeAccount": 4, "requestAmount": 30.5, "boutiqueCardId": "B-17",)"
           R"( "card": "2775001", "cardNumber": "2775001-N", "cardPan": "5536000011112222",)"
           R"( "cardType": 5, "fio": "Card Holder", "hash": "h-9f2c", "identityCode": 6,)"
           R"( "identityMessage": "identified", "isVirtual": 1, "opType": 7,)"
           R"( "partnerExternalId": 8812, "partnerGUID": "6F9619FF-8B86-D011-B42D-00CF4FC964FF",)"
           R"( "pinCode": "4321", "status": 9, "statusPresentActivate": 10,)"
           R"( "statusTypeChange": 11})";
}

inline QByteArray secondAccountJson() {
    return R"({"balance": 0.5, "codeAccount": 12, "confirmedAmount": 2.25, "maxPay": 10.75,)"
           R"( "minPay": 0.25, "presentAccountType": 22, "presentCodeAccount": 24,)"
           R"( "requestAmount": 3.5, "boutiqueCardId": "B-18", "card": "2775002",)"
           R"( "cardNumber": "2775002-N", "cardPan": "5536000033334444", "cardType": 25,)"
           R"( "fio": "Second Holder", "hash": "h-1a2b", "identityCode": 26,)"
           R"( "identityMessage": "second", "isVirtual": 2, "opType": 27,)"
           R"( "partnerExternalId": 9913, "partnerGUID": "A1B2C3D4-0000-1111-2222-333344445555",)"
           R"( "pinCode": "8765", "status": 29, "statusPresentActivate": 30,)"
           R"( "statusTypeChange": 31})";
}

inline QByteArray cardJson() {
    return R"({"accounts": [)" + firstAccountJson() + ", " + secondAccountJson() +
           R"(], "card": "2775001", "hash": "h-card", "isVirtual": 1, "opType": 2,)"
           R"( "partnerExternalId": 8812, "partnerGUID": "6F9619FF-8B86-D011-B42D-00CF4FC964FF"})";
}

inline QByteArray discountJson() {
    return R"({"card": "2775001", "codeAccount": 3, "complectId": 12, "discAmount": 15.75,)"
           R"( "discId": "D-100", "discQty": 0.125, "discType": 2, "id_Rakt": 77,)"
           R"( "presentCard": "P-555", "printComplect": 1, "publicityId": "PUB-1",)"
           R"( "publicityIdExt": "PUB-1-EXT", "publicityName": "Spring sale"})";
}

inline QByteArray presentPaidJson() {
    return R"({"card": "P-555", "paidQty": 0.375, "paidUnit": 250.5})";
}

inline QByteArray extraDataJson() {
    return R"({"key": "colour", "value": "red"})";
}

inline QByteArray staffJson() {
    return R"({"staffId": "S-42", "percent": 12.5})";
}

inline QByteArray lineJson() {
    return R"({"approvedCode": "AC-1", "barCode": "4600000000017", "basePrice": 200.5,)"
           R"( "bonusUnit": 10.25, "connectChatId": "chat-7", "corner": 3,)"
           R"( "dateTime": "2024-03-01T10:15:00", "discountCard": "2775001", "discounts": [)" +
           discountJson() +
           R"(], "discUnitKs": 5.5, "itemId_Crystall": 123456, "itemId_Mercury": "M-123456",)"
           R"( "kodCli": 42, "lineNum": 1, "presentCard": "P-555", "presentPaid": [)" +
           presentPaidJson() +
           R"(], "presentPaidUnit": 2.5, "price": 180.5, "qty": 0.25, "salerId": "seller-3",)"
           R"( "salesPrice": 170.25, "tShopTicketId": "T-9", "extraDataLine": [)" +
           extraDataJson() + R"(], "staff": [)" + staffJson() + "]}";
}

inline QByteArray paymentJson() {
    return R"({"acquirer": "Bank A", "amount": 350.75, "authCode": "AUTH1",)"
           R"( "card": "5536000011112222", "docTypeEnum": 2, "merchantId": "MER-1",)"
           R"( "payDateTime": "2024-03-01T10:20:00", "payment": "card",)"
           R"( "paymentSystemType": "VISA", "rrn": "RRN-77", "sourceId": "SRC-1",)"
           R"( "terminalId": "TERM-5", "type": 1})";
}

inline QByteArray slipJson() {
    return R"({"chequeMessage": "Bonuses: 35", "codeAccount": 3,)"
           R"( "operatorMessage": "Tell the customer", "qty": 1.5})";
}

inline QByteArray commitChequeRequestJson() {
    return R"({"bonusCountCanceled": 2, "cardList": [)" + cardJson() +
           R"(], "cashId": "CASH-3", "dataId": "DATA-1", "dataIdReturned": "DATA-0",)"
           R"( "dateTime": "2024-03-01T10:15:00", "eShopOrderId": "ESO-5", "fd": "FD-1",)"
           R"( "fn": "FN-2", "fpd": "FPD-3", "guid": "G-4", "ksSources": 3, "lines": [)" +
           lineJson() +
           R"(], "mnogoInfo": "MI-6", "online": 1, "orderDateTime": "2024-02-28T09:00:00",)"
           R"( "parkingId": "PK-1", "parkingType": 2, "partnerChequeId": "PC-7",)"
           R"( "partnerId": "PARTNER-8", "payments": [)" +
           paymentJson() +
           R"(], "placeId": "PLACE-9", "presentCountCancel": 1, "returnOrderId": "RO-10",)"
           R"( "shopNum": 17, "token": "tok-11", "tokenCorrectness": 1, "totalAmount": 350.75,)"
           R"( "tShopOrderId": "TSO-12", "unitedLocationId": "UL-13"})";
}

inline QByteArray commitChequeResponseJson() {
    return R"({"bonusAmount": 35.5, "cardList": [)" + cardJson() +
           R"(], "cashId": "CASH-3", "dataId": "DATA-1", "dataIdReturned": "DATA-0",)"
           R"( "dateTime": "2024-03-01T10:15:00", "discAmount": 15.75, "eShopOrderId": "ESO-5",)"
           R"( "fd": "FD-1", "fn": "FN-2", "fpd": "FPD-3", "guid": "G-4", "ksSource": 3,)"
           R"( "lines": [)" +
           lineJson() +
           R"(], "mnogoInfo": "MI-6", "online": 1, "orderDateTime": "2024-02-28T09:00:00",)"
           R"( "parkingDateTimeEntry": "2024-03-01T08:00:00",)"
           R"( "parkingDateTimePrivilegeEnd": "2024-03-01T11:00:00", "parkingDiscAmount": 100.25,)"
           R"( "parkingDiscHours": 2, "parkingId": "PK-1", "parkingTotalAmount": 300.5,)"
           R"( "parkingType": 2, "parkingValidateStatus": "VALID", "partnerChequeId": "PC-7",)"
           R"( "partnerId": "PARTNER-8", "payments": [)" +
           paymentJson() +
           R"(], "placeId": "PLACE-9", "returnOrderId": "RO-10", "shopNum": 17,)"
           R"( "slips": [)" +
           slipJson() +
           R"(], "token": "tok-11", "tokenCorrectness": 1, "totalAmount": 350.75,)"
           R"( "totalAmountAfterKs": 315.0, "tShopOrderId": "TSO-12", "unitedLocationId": "UL-13"})";
}

inline QByteArray processIdRequestJson() {
    return R"({"chequeId": "CH-1", "chequeIdReturned": "CH-0", "discCardId": "2775001",)"
           R"( "isVirtual": 1, "opType": 2, "placeId": "PLACE-9", "shopId": "SHOP-4",)"
           R"( "shopNum": 17, "token": "tok-11", "unitedLocationId": "UL-13"})";
}

inline QByteArray processIdResponseJson() {
    return R"({"clientFIO": "Card Holder", "discCardId": "2775001", "discCardTypeId": "GOLD",)"
           R"( "identityIsRequired": 1, "isLoyaltyCard": 1, "retCode": 5,)"
           R"( "retMessage": "found", "token": "tok-11"})";
}

inline QByteArray processPinRequestJson() {
    return R"({"chequeIdReturned": "CH-0", "discCardId": "2775001", "token": "tok-11",)"
           R"( "uniteLocationId": "UL-13"})";
}

inline QByteArray processPinResponseJson() {
    return R"({"phone": "+7 *** ***-12-34", "pinCodeSended": 1, "retCode": 5,)"
           R"( "retMessage": "sent", "showPinField": 1, "token": "tok-12"})";
}

inline QByteArray checkPinRequestJson() {
    return R"({"chequeId": "CH-1", "chequeIdReturned": "CH-0", "discCardId": "2775001",)"
           R"( "isVirtual": 1, "operationType": 2, "pinCode": "4321", "placeId": "PLACE-9",)"
           R"( "shopId": "SHOP-4", "shopNum": 17, "token": "tok-11", "unitedLocationId": "UL-13"})";
}

inline QByteArray checkPinResponseJson() {
    return R"({"correctPin": 1, "discCardId": "2775001", "retCode": 5, "retMessage": "right"})";
}

inline QByteArray cardBalanceRequestJson() {
    return R"({"discCardId": "2775001", "token": "tok-11"})";
}

inline QByteArray cardBalanceResponseJson() {
    return R"({"askOperation": 1, "balance": 150.5, "retCode": 5, "retMessage": "ok",)"
           R"( "showBalance": 1})";
}

// The sixteen members that the bonus-calculation request and the reservation
// request both declare.
inline QByteArray bonusCalculationMembersJson() {
    return R"("bonusCountCanceled": 2, "calcOnlyKey": "KEY-1", "cardList": [)" + cardJson() +
           R"(], "lines": [)" + lineJson() +
           R"(], "dataId": "DATA-1", "dateTime": "2024-03-01T10:15:00", "eShopOrderId": "ESO-5",)"
           R"( "ksSource": 3, "online": 1, "orderDateTime": "2024-02-28T09:00:00",)"
           R"( "placeId": "PLACE-9", "presentCountCanceled": 1, "salesChannel": 4,)"
           R"( "shopNum": 17, "token": "tok-11", "unitedLocationId": "UL-13")";
}

inline QByteArray calcBonusAmountRequestJson() {
    return "{" + bonusCalculationMembersJson() + "}";
}

inline QByteArray calcBonusAmountResponseJson() {
    return "{" + bonusCalculationMembersJson() +
           R"(, "tokenCorrectness": 1, "dataIdReturn": "RET-1"})";
}

inline QByteArray calcAndReserveBonusPayRequestJson() {
    return "{" + bonusCalculationMembersJson() +
           R"(, "tokenCorrectness": 1, "dataIdReturned": "RET-2"})";
}

inline QByteArray calcAndReserveBonusPayResponseJson() {
    return "{" + bonusCalculationMembersJson() +
           R"(, "tokenCorrectness": 1, "dataIdReturn": "RET-1", "dataIdReturned": "RET-2"})";
}

inline QByteArray parkingInfoRequestJson() {
    return R"({"chequeId": "CH-1", "parkingId": "PK-1", "storeId": "STORE-2"})";
}

inline QByteArray parkingInfoResponseJson() {
    return R"({"parkingId": "PK-1", "parkingValidateStatus": "VALID",)"
           R"( "parkingTotalAmount": 300.5, "parkingDiscAmount": 100.25,)"
           R"( "parkingPayAmount": 200.25, "parkingDiscHours": 2.5,)"
           R"( "parkingDateTimeEntry": "2024-03-01T10:15:00",)"
           R"( "parkingDateTimePrivilegeEnd": "2024-03-01T12:45:00"})";
}

// The parking reply as the record writes it back: its date-times are
// QDateTime values, which JSON shows with milliseconds.
inline QByteArray parkingInfoResponseWrittenBackJson() {
    return R"({"parkingId": "PK-1", "parkingValidateStatus": "VALID",)"
           R"( "parkingTotalAmount": 300.5, "parkingDiscAmount": 100.25,)"
           R"( "parkingPayAmount": 200.25, "parkingDiscHours": 2.5,)"
           R"( "parkingDateTimeEntry": "2024-03-01T10:15:00.000",)"
           R"( "parkingDateTimePrivilegeEnd": "2024-03-01T12:45:00.000"})";
}

inline QByteArray additionalInfoRequestJson() {
    return R"({"chequeId": "CH-1", "discCardId": "2775001", "token": "tok-11"})";
}

inline QByteArray additionalInfoResponseJson() {
    return R"({"cashierText": "Offer the bonus card", "chequeText": "Thank you"})";
}

} // namespace vesk::loyalty::test
