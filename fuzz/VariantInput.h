#pragma once

// A variant tree built from a fuzzer's bytes, with the types a host could put
// in a body or a reply map: numbers of every width and the special doubles,
// text (also with lone UTF-16 surrogates), lists, maps, null, date-times.

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace vesk::fuzz {

class Bytes {
public:
    Bytes(const uint8_t* data, size_t size)
        : data_(data)
        , size_(size) {}
    bool empty() const { return at_ >= size_; }
    uint8_t byte() { return at_ < size_ ? data_[at_++] : 0; }
    template <class T>
    T value() {
        T v{};
        const size_t n = std::min(sizeof(T), size_ - std::min(at_, size_));
        if (n)
            std::memcpy(&v, data_ + at_, n);
        at_ += n;
        return v;
    }
    // UTF-8 text, or raw UTF-16 units (controls, lone surrogates and all).
    QString text() {
        const uint8_t form = byte();
        const size_t n = std::min<size_t>(form % 24, size_ - std::min(at_, size_));
        QString s;
        if (form & 0x80) {
            for (size_t i = 0; i + 1 < n; i += 2)
                s.append(QChar(char16_t(data_[at_ + i] | data_[at_ + i + 1] << 8)));
        } else {
            s = QString::fromUtf8(reinterpret_cast<const char*>(data_ + at_), qsizetype(n));
        }
        at_ += n;
        return s;
    }

private:
    const uint8_t* data_;
    size_t size_;
    size_t at_ = 0;
};

inline const char* const keys[] = {
    "chequeId",    "lines",         "discounts", "qty",      "price",      "barcode",
    "lineNum",     "discCardId",    "token",     "amount",   "cardList",   "payments",
    "publicities", "extraDataLine", "staff",     "percent",  "dateTimeIn", "dateTimeOut",
    "retCode",     "code",          "userMsg",   "accounts", "x"};

inline QVariant variant(Bytes& in, int depth) {
    const double special[] = {0.0,
                              -0.0,
                              std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN(),
                              2147483648.0,
                              -2147483649.0,
                              9007199254740993.0,
                              1e308,
                              5e-324};
    switch (in.byte() % (depth > 4 ? 9 : 11)) {
    case 0:
        return QVariant();
    case 1:
        return QVariant::fromValue(nullptr);
    case 2:
        return bool(in.byte() & 1);
    case 3:
        return in.value<int>();
    case 4:
        return in.value<qlonglong>();
    case 5:
        return in.value<qulonglong>();
    case 6:
        // Any bits; whole numbers of every size; a digit times a power of
        // ten (100000, 9e15): the forms a writer is most likely to get wrong.
        switch (in.byte() % 3) {
        case 0:
            return special[in.byte() % std::size(special)] + in.value<double>() * (in.byte() & 1);
        case 1:
            return double(in.value<qlonglong>() >> (in.byte() % 64));
        default:
            return (in.byte() & 1 ? -1 : 1) * (1 + in.byte() % 9) * std::pow(10.0, in.byte() % 23);
        }
    case 7:
        return in.text();
    case 8:
        return QDateTime::fromString(in.text(), Qt::ISODate);
    case 9: {
        QVariantList list;
        for (int n = in.byte() % 5; n > 0 && !in.empty(); --n)
            list << variant(in, depth + 1);
        return list;
    }
    default: {
        QVariantMap map;
        for (int n = in.byte() % 6; n > 0 && !in.empty(); --n)
            map.insert(in.byte() & 1 ? in.text()
                                     : QString::fromLatin1(keys[in.byte() % std::size(keys)]),
                       variant(in, depth + 1));
        return map;
    }
    }
}

} // namespace vesk::fuzz
