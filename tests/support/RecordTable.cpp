#include "RecordTable.h"

#include <morva/Serder.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaProperty>

namespace vesk::test {
namespace {

// A record of the row's type, made and destroyed through its meta-type.
class AnyRecord {
public:
    explicit AnyRecord(const RecordRow& row)
        : row_(row)
        , data_(row.type.create()) {}
    ~AnyRecord() { row_.type.destroy(data_); }
    AnyRecord(const AnyRecord&) = delete;
    AnyRecord& operator=(const AnyRecord&) = delete;

    void* data() { return data_; }
    const void* data() const { return data_; }

    QVariant serialize() const {
        QVariant out;
        strategy().serialize(&out, data_, *row_.metaObject);
        return out;
    }
    void deserialize(const QVariant& in) { strategy().deserialize(data_, in, *row_.metaObject); }
    QMetaProperty property(const QString& name) const {
        return row_.metaObject->property(row_.metaObject->indexOfProperty(name.toLatin1()));
    }
    bool operator==(const AnyRecord& other) const { return row_.type.equals(data_, other.data_); }

private:
    serder::details::Strategy strategy() const {
        return serder::details::Strategy::create(*row_.metaObject);
    }

    const RecordRow& row_;
    void* data_;
};

QJsonValue jsonOf(const QVariant& value) {
    return QJsonValue::fromVariant(value);
}

QVariantMap objectOf(const QByteArray& json) {
    return QJsonDocument::fromJson(json).object().toVariantMap();
}

QByteArray compact(const QJsonValue& value) {
    if (value.isObject())
        return QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact);
    if (value.isArray())
        return QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact);
    return QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
}

QStringList sortedKeys(const QVariant& map) {
    QStringList keys = map.toMap().keys();
    keys.sort();
    return keys;
}

} // namespace

std::string RecordTableTest::rowName(const testing::TestParamInfo<RecordRow>& info) {
    const QByteArray name = info.param.metaObject->className();
    return name.mid(name.lastIndexOf(':') + 1).toStdString();
}

testing::AssertionResult sameJson(const QByteArray& actual, const QByteArray& expected) {
    QJsonParseError error{};
    const QJsonDocument a = QJsonDocument::fromJson(actual, &error);
    if (error.error != QJsonParseError::NoError)
        return testing::AssertionFailure() << "not JSON: " << actual.toStdString();
    const QJsonDocument b = QJsonDocument::fromJson(expected, &error);
    if (error.error != QJsonParseError::NoError)
        return testing::AssertionFailure()
               << "expected text is not JSON: " << expected.toStdString();
    if (a == b)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "\n  actual:   " << a.toJson(QJsonDocument::Compact).toStdString()
           << "\n  expected: " << b.toJson(QJsonDocument::Compact).toStdString();
}

TEST_P(RecordTableTest, ClassNameIsQualifiedAndFindsItsMetaType) {
    const RecordRow& row = GetParam();
    const QByteArray className = row.metaObject->className();
    EXPECT_TRUE(className.startsWith("vesk::")) << className.toStdString();
    EXPECT_EQ(QByteArray(row.type.name()), className);
    const QMetaType byName = QMetaType::fromName(className);
    ASSERT_TRUE(byName.isValid()) << className.toStdString();
    EXPECT_EQ(byName.metaObject(), row.metaObject);
}

TEST_P(RecordTableTest, PropertiesAreTheMembersInDeclaredOrder) {
    const RecordRow& row = GetParam();
    QStringList names;
    for (int i = 0; i < row.metaObject->propertyCount(); ++i) {
        const QMetaProperty property = row.metaObject->property(i);
        names << QString::fromLatin1(property.name());
        EXPECT_EQ(property.metaType(), QMetaType::fromType<QVariant>()) << property.name();
        EXPECT_TRUE(property.isReadable() && property.isWritable() && property.isStored() &&
                    property.isDesignable() && property.isScriptable())
            << property.name();
    }
    EXPECT_EQ(names, row.properties);
}

TEST_P(RecordTableTest, CarriesItsOwnSkipNullClassInfo) {
    const QMetaObject& type = *GetParam().metaObject;
    ASSERT_EQ(type.classInfoCount() - type.classInfoOffset(), 1);
    const QMetaClassInfo info = type.classInfo(type.classInfoOffset());
    EXPECT_STREQ(info.name(), "serder:skipNull");
    EXPECT_STREQ(info.value(), "true");
}

TEST_P(RecordTableTest, DefaultRecordSerialisesExactlyItsPlainMembers) {
    const AnyRecord record(GetParam());
    QStringList expected = GetParam().defaultKeys;
    expected.sort();
    EXPECT_EQ(sortedKeys(record.serialize()), expected);
}

TEST_P(RecordTableTest, FullObjectSetsEveryMember) {
    EXPECT_EQ(sortedKeys(objectOf(GetParam().fullObject)), [&] {
        QStringList keys = GetParam().properties;
        keys.sort();
        return keys;
    }());
}

TEST_P(RecordTableTest, EachMemberRoundTripsThroughItsProperty) {
    const RecordRow& row = GetParam();
    const QVariantMap full = objectOf(row.fullObject);
    const QVariantMap back = objectOf(row.writtenBack.isEmpty() ? row.fullObject : row.writtenBack);
    for (const QString& name : row.properties) {
        SCOPED_TRACE(name.toStdString());
        AnyRecord record(row);
        const AnyRecord untouched(row);
        const QMetaProperty property = record.property(name);
        ASSERT_TRUE(property.writeOnGadget(record.data(), full.value(name)));
        EXPECT_FALSE(record == untouched) << "writing the member changed nothing";
        EXPECT_EQ(compact(jsonOf(property.readOnGadget(record.data()))),
                  compact(jsonOf(back.value(name))));
    }
}

TEST_P(RecordTableTest, FullObjectIsReadAtEveryDepthAndWrittenBackUnchanged) {
    const RecordRow& row = GetParam();
    AnyRecord record(row);
    record.deserialize(objectOf(row.fullObject));
    const QByteArray written =
        QJsonDocument(QJsonObject::fromVariantMap(record.serialize().toMap()))
            .toJson(QJsonDocument::Compact);
    EXPECT_TRUE(sameJson(written, row.writtenBack.isEmpty() ? row.fullObject : row.writtenBack));

    AnyRecord again(row);
    again.deserialize(record.serialize());
    EXPECT_TRUE(again == record) << "a record read from its own serialisation differs";
}

} // namespace vesk::test
