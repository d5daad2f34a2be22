#pragma once

// The data every body benchmark uses: a discount calculation of a cheque of
// N lines, its reply, and the references that do the same work by hand.

#include <vesk/vesk.h>

#include <QByteArray>

#include <string>

namespace vesk::bench {

// A cheque of `lines` lines, each with a barcode, a price, a quantity and
// one manual discount, and one loyalty card.
disc::DiscCalcRequest cheque(int lines);

// The discount service's reply to it: two discounts a line, as compact JSON.
QByteArray reply(int lines);

// Hand-written references for the same record types (References.cpp).
namespace qtjson {
QByteArray write(const disc::DiscCalcRequest& request); // QJsonObject code, compact
disc::DiscCalcResponse read(const QByteArray& json);    // QJsonDocument walked by hand
} // namespace qtjson

namespace fastjson {
std::string write(const disc::DiscCalcRequest& request); // RapidJSON writer
disc::DiscCalcResponse read(const std::string& json);    // simdjson On-Demand
} // namespace fastjson

} // namespace vesk::bench
