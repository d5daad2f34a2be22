// Every record of the three services, every member filled with a value of
// its own, through the masking that the logs use: no secret and no holder's
// personal data may show, and everything else must (so that the check
// cannot pass by hiding all). Which members are secret is decided here, by
// name, independently of the masking's own lists, so that a member added
// later with a secret-looking name fails this test until it is masked or
// reviewed into the list of harmless ones below.

#include <masking/SecretMasking.h>
#include <vesk/vesk.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaProperty>
#include <QRegularExpression>
#include <QSet>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace vesk {
namespace {

using testing::HasSubstr;
using testing::Not;

// Member names that look secret or personal.
const QRegularExpression
    looksSecret(QStringLiteral("card|pin|token|hash|password|fio|name|phone|mail|birth"),
                QRegularExpression::CaseInsensitiveOption);

// Members whose names match, reviewed as harmless.
const QSet<QString> harmless{
    QStringLiteral("cardList"),         // a list of card entries; their members are checked
    QStringLiteral("cardType"),         // the kind of card (GOLD), not the card
    QStringLiteral("discCardTypeId"),   // the same, as an identifier
    QStringLiteral("isLoyaltyCard"),    // a flag
    QStringLiteral("correctPin"),       // whether the PIN was right, not the PIN
    QStringLiteral("pinCodeSended"),    // whether a PIN was sent
    QStringLiteral("showPinField"),     // whether the till asks for a PIN
    QStringLiteral("tokenCorrectness"), // whether the token was right
    QStringLiteral("name"),             // an item's name
    QStringLiteral("publicityName"),    // a promotion's name
};

bool isSecret(const QString& key) {
    return looksSecret.match(key).hasMatch() && !harmless.contains(key);
}

struct Destroy {
    QMetaType type;
    void operator()(void* record) const { type.destroy(record); }
};

bool isRecord(const QMetaType& type) {
    if (!type.isValid() || !(type.flags() & QMetaType::IsGadget) || !type.metaObject())
        return false;
    const QByteArray name = type.name();
    return type.metaObject()->indexOfClassInfo("serder:skipNull") >= 0 &&
           (name.startsWith("vesk::disc::") || name.startsWith("vesk::loyalty::") ||
            name.startsWith("vesk::sales::"));
}

// Qt warns about every id that names no type, even when only asked whether
// it does. The probe below ends at the first such id, and its one warning is
// not for the reader of the test's output.
QtMessageHandler previousHandler = nullptr;

void dropInvalidTypeWarning(QtMsgType kind, const QMessageLogContext& context,
                            const QString& message) {
    if (!message.startsWith(QLatin1String("Trying to construct an instance of an invalid type")))
        previousHandler(kind, context, message);
}

// Every record type of the three services. Custom types get their ids in
// sequence after QMetaType::User, so the first id without a type ends them.
QList<QMetaType> allRecords() {
    QList<QMetaType> records;
    previousHandler = qInstallMessageHandler(dropInvalidTypeWarning);
    for (int id = QMetaType::User + 1;; ++id) {
        const QMetaType type(id);
        if (!type.isValid())
            break;
        if (isRecord(type))
            records << type;
    }
    qInstallMessageHandler(previousHandler);
    return records;
}

// The variant type of each member of a record: a plain member reads as its
// type, an optional one once a probe made it present.
std::map<QString, int> kindsOf(const QMetaType& type) {
    std::map<QString, int> kinds;
    const QMetaObject* meta = type.metaObject();
    std::unique_ptr<void, Destroy> record(type.create(), Destroy{type});
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        QVariant value = property.readOnGadget(record.get());
        if (!value.isValid()) {
            property.writeOnGadget(record.get(), QStringLiteral("1"));
            value = property.readOnGadget(record.get());
        }
        kinds.emplace(QString::fromLatin1(property.name()), value.metaType().id());
    }
    return kinds;
}

// The kinds of every key of every record; a key that is a list of records
// anywhere counts as one (an entry's type is not known from its list).
std::map<QString, int> kindsOfAllKeys(const QList<QMetaType>& records) {
    std::map<QString, int> kinds;
    for (const QMetaType& type : records) {
        for (const auto& [key, kind] : kindsOf(type)) {
            auto [it, added] = kinds.emplace(key, kind);
            if (!added && kind == QMetaType::QVariantList)
                it->second = kind;
        }
    }
    return kinds;
}

// A value of its own for each member, of the member's kind. A list of records
// gets one entry that sets every key any record has, so that whatever the
// entry's type is, all its members are filled; entries nest two deep.
class Filler {
public:
    explicit Filler(std::map<QString, int> allKinds)
        : allKinds_(std::move(allKinds)) {}

    QVariantMap record(const std::map<QString, int>& kinds) {
        QVariantMap map;
        for (const auto& [key, kind] : kinds)
            map.insert(key, valueOf(key, kind, 0));
        return map;
    }

    // Every text handed out, by key.
    std::multimap<QString, QString> texts;

private:
    QVariant valueOf(const QString& key, int kind, int depth) {
        switch (kind) {
        case QMetaType::Int:
            return next_++;
        case QMetaType::Double:
            return double(next_++) + 0.25;
        case QMetaType::Bool:
            return true;
        case QMetaType::QDateTime:
            return QStringLiteral("2026-11-23T10:%1:00").arg(next_++ % 60, 2, 10, QLatin1Char('0'));
        case QMetaType::QStringList:
            return QStringList{text(key)};
        case QMetaType::QVariantList:
            return depth < 2 ? QVariantList{entry(depth + 1)} : QVariantList();
        default:
            return text(key);
        }
    }

    const QVariantMap& entry(int depth) {
        QVariantMap& made = entries_[depth];
        if (made.isEmpty()) {
            for (const auto& [key, kind] : allKinds_)
                made.insert(key, valueOf(key, kind, depth));
        }
        return made;
    }

    // Unique, long enough that a card number keeps more than its last four,
    // and with the key in it, so that a failure names the member.
    QString text(const QString& key) {
        const QString value = QStringLiteral("V%1-%2-778899").arg(next_++).arg(key);
        texts.emplace(key, value);
        return value;
    }

    std::map<QString, int> allKinds_;
    std::map<int, QVariantMap> entries_;
    int next_ = 100000;
};

class LogMaskingTest : public testing::TestWithParam<QMetaType> {};

TEST_P(LogMaskingTest, NoSecretOrPersonalMemberReachesTheLogAndEverythingElseDoes) {
    static const QList<QMetaType> records = allRecords();
    const QMetaType type = GetParam();
    Filler filler(kindsOfAllKeys(records));
    const QVariantMap filled = filler.record(kindsOf(type));

    // The record takes what fits it, and writes it back as its body.
    std::unique_ptr<void, Destroy> record(type.create(), Destroy{type});
    const QMetaObject* meta = type.metaObject();
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        property.writeOnGadget(record.get(), filled.value(QString::fromLatin1(property.name())));
    }
    QVariantMap body;
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        const QVariant value = property.readOnGadget(record.get());
        if (!value.isNull())
            body.insert(QString::fromLatin1(property.name()), value);
    }
    const QByteArray json = QJsonDocument(QJsonObject::fromVariantMap(body)).toJson();
    const std::string logged = masking::maskSecrets(json).toStdString();
    const std::string excerpt = masking::excerpt(json, 1 << 20).toStdString();

    int secrets = 0;
    int others = 0;
    for (const auto& [key, value] : filler.texts) {
        if (!json.contains(value.toUtf8()))
            continue; // not a member of this record, at any depth
        // A card number may keep its last four characters; nothing more shows.
        const std::string head = value.chopped(4).toStdString();
        if (isSecret(key)) {
            ++secrets;
            EXPECT_THAT(logged, Not(HasSubstr(head))) << key.toStdString();
            EXPECT_THAT(excerpt, Not(HasSubstr(head))) << key.toStdString();
            EXPECT_THAT(masking::maskedValue(key, value).toStdString(), Not(HasSubstr(head)));
        } else {
            ++others;
            EXPECT_THAT(logged, HasSubstr(value.toStdString())) << key.toStdString();
        }
    }
    EXPECT_GT(secrets + others, 0) << "the record took none of the values";
}

INSTANTIATE_TEST_SUITE_P(EveryRecord, LogMaskingTest, testing::ValuesIn(allRecords()),
                         [](const testing::TestParamInfo<QMetaType>& info) {
                             return QString::fromLatin1(info.param.name())
                                 .replace(QLatin1String("::"), QLatin1String("_"))
                                 .toStdString();
                         });

TEST(LogMasking, EveryServiceRecordIsWalked) {
    const QList<QMetaType> records = allRecords();
    int disc = 0, loyalty = 0, sales = 0;
    for (const QMetaType& type : records) {
        const QByteArray name = type.name();
        disc += name.startsWith("vesk::disc::");
        loyalty += name.startsWith("vesk::loyalty::");
        sales += name.startsWith("vesk::sales::");
    }
    EXPECT_EQ(disc, 16);
    EXPECT_EQ(loyalty, 27);
    EXPECT_EQ(sales, 8);
}

TEST(LogMasking, SecretLookingNamesOfTheRecordsAreAllMaskedOrReviewed) {
    for (const auto& [key, kind] : kindsOfAllKeys(allRecords())) {
        if (!looksSecret.match(key).hasMatch() || harmless.contains(key))
            continue;
        EXPECT_NE(masking::secretOf(key), masking::Secret::None) << key.toStdString();
    }
}

} // namespace
} // namespace vesk
