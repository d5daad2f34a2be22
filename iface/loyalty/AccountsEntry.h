#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// One account of a loyalty card, as an element of CardListEntry's accounts.
class AccountsEntry {
    VESK_RECORD(AccountsEntry)
    VESK_FIELD(OptionalNumber, balance)
    VESK_FIELD(Integer, codeAccount)
    VESK_FIELD(OptionalNumber, confirmedAmount)
    VESK_FIELD(OptionalNumber, maxPay)
    VESK_FIELD(OptionalNumber, minPay)
    VESK_FIELD(OptionalInteger, presentAccountType)
    VESK_FIELD(OptionalInteger, presentCodeAccount)
    VESK_FIELD(Number, requestAmount)
    VESK_FIELD(String, boutiqueCardId)
    VESK_FIELD(String, card)
    VESK_FIELD(String, cardNumber)
    VESK_FIELD(String, cardPan)
    VESK_FIELD(Integer, cardType)
    VESK_FIELD(String, fio)
    VESK_FIELD(String, hash)
    VESK_FIELD(Integer, identityCode)
    VESK_FIELD(String, identityMessage)
    VESK_FIELD(Integer, isVirtual)
    VESK_FIELD(Integer, opType)
    VESK_FIELD(Integer, partnerExternalId)
    VESK_FIELD(String, partnerGUID)
    VESK_FIELD(String, pinCode)
    VESK_FIELD(Integer, status)
    VESK_FIELD(Integer, statusPresentActivate)
    VESK_FIELD(Integer, statusTypeChange)
};

} // namespace vesk::loyalty
