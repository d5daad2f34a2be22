#include "Cheques.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <simdjson.h>

namespace vesk::bench {

namespace qtjson {

QByteArray write(const disc::DiscCalcRequest& request) {
    QJsonArray cards;
    for (const disc::CardListEntry& card : request.cardList) {
        QJsonObject entry;
        if (card.card)
            entry.insert(QStringLiteral("card"), *card.card);
        if (card.partnerId)
            entry.insert(QStringLiteral("partnerId"), *card.partnerId);
        cards.append(entry);
    }
    QJsonArray lines;
    for (const disc::LinesEntryRequest& line : request.lines) {
        QJsonArray discounts;
        for (const disc::DiscountsEntryRequest& discount : line.discounts) {
            QJsonObject entry;
            if (discount.discId)
                entry.insert(QStringLiteral("discId"), *discount.discId);
            if (discount.discUnit)
                entry.insert(QStringLiteral("discUnit"), *discount.discUnit);
            if (discount.discQty)
                entry.insert(QStringLiteral("discQty"), *discount.discQty);
            discounts.append(entry);
        }
        QJsonObject entry{{QStringLiteral("barcode"), line.barcode},
                          {QStringLiteral("discounts"), discounts},
                          {QStringLiteral("lineNum"), line.lineNum},
                          {QStringLiteral("locationId"), line.locationId},
                          {QStringLiteral("retailPrice"), line.retailPrice},
                          {QStringLiteral("qty"), line.qty},
                          {QStringLiteral("extraDataLine"), QJsonArray()}};
        if (line.skuId)
            entry.insert(QStringLiteral("skuId"), *line.skuId);
        lines.append(entry);
    }
    const QJsonObject body{{QStringLiteral("cardList"), cards},
                           {QStringLiteral("chequeId"), request.chequeId},
                           {QStringLiteral("calcDateTime"), request.calcDateTime},
                           {QStringLiteral("lines"), lines},
                           {QStringLiteral("publicities"), QJsonArray()},
                           {QStringLiteral("salesChannel"), request.salesChannel},
                           {QStringLiteral("storeId"), request.storeId}};
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

disc::DiscCalcResponse read(const QByteArray& json) {
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    disc::DiscCalcResponse response;
    response.chequeId = object.value(QLatin1String("chequeId")).toString();
    response.calcDateTime = object.value(QLatin1String("calcDateTime")).toString();
    const QJsonArray lines = object.value(QLatin1String("lines")).toArray();
    response.lines.reserve(lines.size());
    for (const QJsonValue& lineValue : lines) {
        const QJsonObject lineObject = lineValue.toObject();
        disc::LinesEntryResponse line;
        line.lineNum = lineObject.value(QLatin1String("lineNum")).toInt();
        const QJsonArray discounts = lineObject.value(QLatin1String("discounts")).toArray();
        for (const QJsonValue& discountValue : discounts) {
            const QJsonObject d = discountValue.toObject();
            disc::DiscountsEntryResponse discount;
            discount.discId = d.value(QLatin1String("discId")).toString();
            discount.card = d.value(QLatin1String("card")).toString();
            discount.complectId = d.value(QLatin1String("complectId")).toInt();
            discount.discUnit = d.value(QLatin1String("discUnit")).toDouble();
            discount.discQty = d.value(QLatin1String("discQty")).toDouble();
            discount.description = d.value(QLatin1String("description")).toString();
            line.discounts.append(discount);
        }
        response.lines.append(line);
    }
    return response;
}

} // namespace qtjson

namespace fastjson {
namespace {

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

void string(Writer& writer, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    writer.String(utf8.constData(), rapidjson::SizeType(utf8.size()));
}

QString text(simdjson::ondemand::value value) {
    const std::string_view view = value.get_string();
    return QString::fromUtf8(view.data(), qsizetype(view.size()));
}

} // namespace

std::string write(const disc::DiscCalcRequest& request) {
    rapidjson::StringBuffer buffer;
    Writer writer(buffer);
    writer.StartObject();
    writer.Key("cardList");
    writer.StartArray();
    for (const disc::CardListEntry& card : request.cardList) {
        writer.StartObject();
        if (card.card) {
            writer.Key("card");
            string(writer, *card.card);
        }
        if (card.partnerId) {
            writer.Key("partnerId");
            writer.Int(*card.partnerId);
        }
        writer.EndObject();
    }
    writer.EndArray();
    writer.Key("chequeId");
    string(writer, request.chequeId);
    writer.Key("calcDateTime");
    string(writer, request.calcDateTime);
    writer.Key("lines");
    writer.StartArray();
    for (const disc::LinesEntryRequest& line : request.lines) {
        writer.StartObject();
        writer.Key("barcode");
        string(writer, line.barcode);
        writer.Key("discounts");
        writer.StartArray();
        for (const disc::DiscountsEntryRequest& discount : line.discounts) {
            writer.StartObject();
            if (discount.discId) {
                writer.Key("discId");
                string(writer, *discount.discId);
            }
            if (discount.discUnit) {
                writer.Key("discUnit");
                writer.Double(*discount.discUnit);
            }
            if (discount.discQty) {
                writer.Key("discQty");
                writer.Double(*discount.discQty);
            }
            writer.EndObject();
        }
        writer.EndArray();
        writer.Key("extraDataLine");
        writer.StartArray();
        writer.EndArray();
        writer.Key("lineNum");
        writer.Int(line.lineNum);
        writer.Key("locationId");
        string(writer, line.locationId);
        writer.Key("qty");
        writer.Double(line.qty);
        writer.Key("retailPrice");
        writer.Double(line.retailPrice);
        if (line.skuId) {
            writer.Key("skuId");
            string(writer, *line.skuId);
        }
        writer.EndObject();
    }
    writer.EndArray();
    writer.Key("publicities");
    writer.StartArray();
    writer.EndArray();
    writer.Key("salesChannel");
    writer.Int(request.salesChannel);
    writer.Key("storeId");
    string(writer, request.storeId);
    writer.EndObject();
    return std::string(buffer.GetString(), buffer.GetSize());
}

disc::DiscCalcResponse read(const std::string& json) {
    static thread_local simdjson::ondemand::parser parser;
    const simdjson::padded_string padded(json);
    simdjson::ondemand::document document = parser.iterate(padded);
    disc::DiscCalcResponse response;
    for (auto field : document.get_object()) {
        const std::string_view key = field.unescaped_key();
        if (key == "chequeId") {
            response.chequeId = text(field.value());
        } else if (key == "calcDateTime") {
            response.calcDateTime = text(field.value());
        } else if (key == "lines") {
            for (auto lineValue : field.value().get_array()) {
                disc::LinesEntryResponse line;
                for (auto lineField : lineValue.get_object()) {
                    const std::string_view lineKey = lineField.unescaped_key();
                    if (lineKey == "lineNum") {
                        line.lineNum = int(int64_t(lineField.value().get_int64()));
                    } else if (lineKey == "discounts") {
                        for (auto discountValue : lineField.value().get_array()) {
                            disc::DiscountsEntryResponse d;
                            for (auto f : discountValue.get_object()) {
                                const std::string_view k = f.unescaped_key();
                                if (k == "discId")
                                    d.discId = text(f.value());
                                else if (k == "card")
                                    d.card = text(f.value());
                                else if (k == "complectId")
                                    d.complectId = int(int64_t(f.value().get_int64()));
                                else if (k == "discUnit")
                                    d.discUnit = double(f.value().get_double());
                                else if (k == "discQty")
                                    d.discQty = double(f.value().get_double());
                                else if (k == "description")
                                    d.description = text(f.value());
                            }
                            line.discounts.append(d);
                        }
                    }
                }
                response.lines.append(line);
            }
        }
    }
    return response;
}

} // namespace fastjson
} // namespace vesk::bench
