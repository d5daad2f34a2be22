// The direct reply reader, built with simdjson (VESK_FAST_REPLY_READER).

#include "ReplyJson.h"

#include <QByteArrayView>
#include <QJsonDocument>
#include <QJsonObject>

#include <simdjson.h>

#include <cmath>
#include <cstring>
#include <string_view>
#include <vector>

namespace vesk::json {
namespace {

namespace od = simdjson::ondemand;

// Deeper documents go to Qt, which sets its own limit.
constexpr int maxDepth = 256;

QString text(std::string_view view) {
    return QString::fromUtf8(view.data(), qsizetype(view.size()));
}

// A number as Qt's reader takes it: a token without fraction or exponent is
// an integer if it fits 64 bits; anything else goes through Qt's own
// conversion of the same text, which refuses what overflows or underflows.
bool readNumber(od::value& value, QVariant& out) {
    std::string_view token = value.raw_json_token();
    while (!token.empty() && (token.back() == ' ' || token.back() == '\t' || token.back() == '\n' ||
                              token.back() == '\r'))
        token.remove_suffix(1);
    od::number number;
    if (value.get_number().get(number) != simdjson::SUCCESS)
        return false; // not a number simdjson takes: Qt decides
    const QByteArrayView digits(token.data(), qsizetype(token.size()));
    bool ok = false;
    if (token.find_first_of(".eE") == std::string_view::npos) {
        const qlonglong integer = digits.toLongLong(&ok);
        if (ok) {
            out = integer;
            return true;
        }
    }
    const double real = digits.toDouble(&ok);
    if (!ok)
        return false;
    // Qt keeps a whole number that fits 64 bits as an integer, however it
    // was written ("1E2", "-0.0").
    if (real >= -9223372036854775808.0 && real < 9223372036854775808.0 &&
        real == std::trunc(real)) {
        out = qlonglong(real);
        return true;
    }
    out = real;
    return true;
}

bool readValue(od::value value, QVariant& out, int depth);

template <class Object>
bool readObject(Object& source, QVariantMap& map, int depth) {
    for (auto member : source) {
        od::field field;
        std::string_view key;
        if (std::move(member).get(field) != simdjson::SUCCESS ||
            field.unescaped_key().get(key) != simdjson::SUCCESS)
            return false;
        const QString name = text(key);
        QVariant value;
        if (!readValue(field.value(), value, depth + 1))
            return false;
        map.insert(name, std::move(value));
    }
    return true;
}

template <class Array>
bool readArray(Array& source, QVariantList& list, int depth) {
    for (auto element : source) {
        od::value value;
        if (std::move(element).get(value) != simdjson::SUCCESS)
            return false;
        QVariant read;
        if (!readValue(value, read, depth + 1))
            return false;
        list.append(std::move(read));
    }
    return true;
}

bool readValue(od::value value, QVariant& out, int depth) {
    if (depth > maxDepth)
        return false;
    od::json_type type;
    if (value.type().get(type) != simdjson::SUCCESS)
        return false;
    switch (type) {
    case od::json_type::object: {
        od::object object;
        QVariantMap map;
        if (value.get_object().get(object) != simdjson::SUCCESS || !readObject(object, map, depth))
            return false;
        out = std::move(map);
        return true;
    }
    case od::json_type::array: {
        od::array array;
        QVariantList list;
        if (value.get_array().get(array) != simdjson::SUCCESS || !readArray(array, list, depth))
            return false;
        out = std::move(list);
        return true;
    }
    case od::json_type::string: {
        std::string_view view;
        if (value.get_string().get(view) != simdjson::SUCCESS)
            return false;
        out = text(view);
        return true;
    }
    case od::json_type::number:
        return readNumber(value, out);
    case od::json_type::boolean: {
        bool flag = false;
        if (value.get_bool().get(flag) != simdjson::SUCCESS)
            return false;
        out = flag;
        return true;
    }
    case od::json_type::null: {
        bool isNull = false;
        if (value.is_null().get(isNull) != simdjson::SUCCESS || !isNull)
            return false;
        out = QVariant::fromValue(nullptr);
        return true;
    }
    }
    return false;
}

} // namespace

bool directReaderBuilt() {
    return true;
}

bool readReplyDirectly(const QByteArray& body, Reply& out) {
    if (body.isEmpty())
        return false;
    // simdjson reads past the end: the body goes to a padded buffer kept per thread.
    thread_local std::vector<char> buffer;
    thread_local od::parser parser;
    buffer.resize(std::size_t(body.size()) + simdjson::SIMDJSON_PADDING);
    std::memcpy(buffer.data(), body.constData(), std::size_t(body.size()));
    const simdjson::padded_string_view padded(buffer.data(), std::size_t(body.size()),
                                              buffer.size());
    od::document document;
    od::json_type type;
    if (parser.iterate(padded).get(document) != simdjson::SUCCESS ||
        document.type().get(type) != simdjson::SUCCESS)
        return false;
    out = Reply();
    if (type == od::json_type::object) {
        od::object object;
        if (document.get_object().get(object) != simdjson::SUCCESS ||
            !readObject(object, out.object, 1))
            return false;
        out.shape = Reply::Shape::Object;
    } else if (type == od::json_type::array) {
        od::array array;
        QVariantList ignored;
        if (document.get_array().get(array) != simdjson::SUCCESS || !readArray(array, ignored, 1))
            return false;
        out.shape = Reply::Shape::Array;
    } else {
        return false; // a scalar document: Qt decides what it is
    }
    // Nothing may follow the document: past its end is where the reader is.
    const char* rest = nullptr;
    return document.current_location().get(rest) == simdjson::OUT_OF_BOUNDS;
}

} // namespace vesk::json
