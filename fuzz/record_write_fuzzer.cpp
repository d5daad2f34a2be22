// Record writes from arbitrary variants: a JSON text, or a variant tree built
// from the bytes with the types a host could put there (numbers of every
// width, text, lists, maps, null, date-times), written into every reply
// record, read back and written again.

#include "FuzzInput.h"

#include <QDateTime>
#include <QJsonObject>
#include <QVariantList>
#include <QVariantMap>

#include <cmath>
#include <cstring>
#include <limits>

namespace {

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
    QString text() {
        const size_t n = std::min<size_t>(byte() % 24, size_ - std::min(at_, size_));
        const QString s =
            QString::fromUtf8(reinterpret_cast<const char*>(data_ + at_), qsizetype(n));
        at_ += n;
        return s;
    }

private:
    const uint8_t* data_;
    size_t size_;
    size_t at_ = 0;
};

const char* const keys[] = {
    "chequeId",    "lines",         "discounts", "qty",      "price",      "barcode",
    "lineNum",     "discCardId",    "token",     "amount",   "cardList",   "payments",
    "publicities", "extraDataLine", "staff",     "percent",  "dateTimeIn", "dateTimeOut",
    "retCode",     "code",          "userMsg",   "accounts", "x"};

QVariant variant(Bytes& in, int depth) {
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
        return special[in.byte() % std::size(special)] + in.value<double>() * (in.byte() & 1);
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
            map.insert(QString::fromLatin1(keys[in.byte() % std::size(keys)]),
                       variant(in, depth + 1));
        return map;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2)
        return 0;
    QVariant in;
    if (data[0] & 1) {
        in = QJsonDocument::fromJson(vesk::fuzz::rest(data, size, 2)).toVariant();
    } else {
        Bytes bytes(data + 2, size - 2);
        in = variant(bytes, 0);
    }
    vesk::fuzz::visitType<vesk::fuzz::Responses>(data[1], [&](auto* type) {
        using Record = std::remove_pointer_t<decltype(type)>;
        const Record record = serder::deserialize<Record>(in);
        const Record again = serder::deserialize<Record>(serder::serialize(record));
        (void)(record == again);
    });
    return 0;
}
