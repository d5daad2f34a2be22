#pragma once

// What the fuzzers share: reading a fuzzer's bytes, and the response types.

#include <vesk/vesk.h>

#include <QByteArray>
#include <QJsonDocument>
#include <QVariant>

#include <cstddef>
#include <cstdint>
#include <tuple>

namespace vesk::fuzz {

// The reply records of the sixteen operations (the two additional-info
// operations share one).
using Responses =
    std::tuple<disc::DiscCalcResponse, disc::DiscCalcPayResponse, disc::GetPublicityListResponse,
               loyalty::ProcessIdResponse, loyalty::ProcessPinResponse,
               loyalty::CardBalanceResponse, loyalty::CalcBonusAmountResponse,
               loyalty::CalcAndReserveBonusPayResponse, loyalty::CheckPinResponse,
               loyalty::CommitChequeResponse, loyalty::ParkingInfoResponse,
               loyalty::AdditionalInfoResponse, sales::ItemInfoResponse,
               sales::ReserveChequeResponse, sales::UnreserveChequeResponse>;

// Calls `visit.template operator()<T>()` for the record type at `index`
// (modulo their number) of the tuple.
template <class Tuple, class Visit, std::size_t... I>
void visitType(std::size_t index, Visit&& visit, std::index_sequence<I...>) {
    index %= sizeof...(I);
    ((index == I ? (visit(static_cast<std::tuple_element_t<I, Tuple>*>(nullptr)), 0) : 0), ...);
}

template <class Tuple, class Visit>
void visitType(std::size_t index, Visit&& visit) {
    visitType<Tuple>(index, visit, std::make_index_sequence<std::tuple_size_v<Tuple>>{});
}

// The bytes after the first `skip`, as a QByteArray that shares nothing.
inline QByteArray rest(const uint8_t* data, std::size_t size, std::size_t skip) {
    return skip < size
               ? QByteArray(reinterpret_cast<const char*>(data + skip), qsizetype(size - skip))
               : QByteArray();
}

} // namespace vesk::fuzz
