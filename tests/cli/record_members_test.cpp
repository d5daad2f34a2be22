// Records as the library describes them: found by name, their members'
// kinds, entry records and sorts.

#include "VeskProcess.h"

#include <cli/RecordMembers.h>

#include <vesk/PreparedRequestBase.h>
#include <vesk/vesk.h>

#include <gtest/gtest.h>

namespace vesk::cli::test {
namespace {

template <class Record>
QList<RecordMember> membersOf() {
    return recordMembers(QMetaType::fromType<Record>());
}

RecordMember memberNamed(const QList<RecordMember>& members, const QString& key) {
    for (const RecordMember& member : members)
        if (member.key == key)
            return member;
    ADD_FAILURE() << "no member " << key.toStdString();
    return {};
}

TEST(RecordMembers, OptionalListsOfTheLoyaltyLineAreListsThatMayBeAbsent) {
    const QList<RecordMember> members = membersOf<loyalty::LinesEntry>();
    for (const char* key : {"extraDataLine", "staff"}) {
        const RecordMember member = memberNamed(members, QString::fromLatin1(key));
        EXPECT_TRUE(member.optional) << key;
    }
    EXPECT_EQ(memberNamed(members, QStringLiteral("extraDataLine")).kind,
              QStringLiteral("list of vesk::loyalty::ExtraDataEntry"));
    EXPECT_EQ(memberNamed(members, QStringLiteral("staff")).kind,
              QStringLiteral("list of vesk::loyalty::StaffEntry"));
    const RecordMember discounts = memberNamed(members, QStringLiteral("discounts"));
    EXPECT_EQ(discounts.kind, QStringLiteral("list of vesk::loyalty::DiscountsEntry"));
    EXPECT_EQ(discounts.entry, &loyalty::DiscountsEntry::staticMetaObject);
    EXPECT_FALSE(discounts.optional);
}

TEST(RecordMembers, EachKindIsNamedByItsWord) {
    EXPECT_EQ(memberNamed(membersOf<loyalty::LinesEntry>(), QStringLiteral("corner")).kind,
              QStringLiteral("integer"));
    EXPECT_EQ(memberNamed(membersOf<loyalty::LinesEntry>(), QStringLiteral("qty")).kind,
              QStringLiteral("number"));
    EXPECT_EQ(memberNamed(membersOf<loyalty::StaffEntry>(), QStringLiteral("percent")).kind,
              QStringLiteral("number"));
    const RecordMember include = memberNamed(membersOf<sales::ReserveChequeRequest>(),
                                             QStringLiteral("includeFirstRetailPrice"));
    EXPECT_EQ(include.kind, QStringLiteral("boolean"));
    EXPECT_TRUE(include.optional);
    EXPECT_EQ(memberNamed(membersOf<disc::DiscCalcRequest>(), QStringLiteral("publicities")).kind,
              QStringLiteral("string list"));
    EXPECT_EQ(memberNamed(membersOf<loyalty::ParkingInfoResponse>(),
                          QStringLiteral("parkingDateTimeEntry"))
                  .kind,
              QStringLiteral("date-time"));
}

TEST(RecordMembers, DerivedRecordListsItsBaseMembersFirst) {
    const QList<RecordMember> members = membersOf<loyalty::CalcAndReserveBonusPayResponse>();
    ASSERT_EQ(members.size(), 19);
    EXPECT_EQ(members.first().key, QStringLiteral("bonusCountCanceled"));
    EXPECT_TRUE(members.first().optional);
    EXPECT_EQ(members[16].key, QStringLiteral("tokenCorrectness"));
    EXPECT_EQ(members[17].key, QStringLiteral("dataIdReturn"));
    EXPECT_EQ(members[18].key, QStringLiteral("dataIdReturned"));
    EXPECT_EQ(members[18].kind, QStringLiteral("string"));
}

TEST(RecordMembers, OnlyGadgetsMarkedAsRecordsAreRecords) {
    EXPECT_TRUE(isRecord(QMetaType::fromType<disc::LinesEntryRequest>()));
    EXPECT_FALSE(isRecord(QMetaType::fromType<PreparedRequestBase>()));
    EXPECT_FALSE(isRecord(QMetaType::fromType<QString>()));
    EXPECT_FALSE(isRecord(QMetaType()));
    EXPECT_TRUE(recordMembers(QMetaType::fromType<QString>()).isEmpty());
}

TEST(FindRecords, ShortNameIsLookedUpInEveryService) {
    EXPECT_EQ(findRecords(QStringLiteral("LinesEntry")),
              QList<QMetaType>{QMetaType::fromType<loyalty::LinesEntry>()});
    EXPECT_EQ(findRecords(QStringLiteral("CardListEntry")),
              (QList<QMetaType>{QMetaType::fromType<disc::CardListEntry>(),
                                QMetaType::fromType<loyalty::CardListEntry>()}));
    EXPECT_EQ(findRecords(QStringLiteral("loyalty::CardListEntry")),
              QList<QMetaType>{QMetaType::fromType<loyalty::CardListEntry>()});
    EXPECT_EQ(findRecords(QStringLiteral("vesk::disc::CardListEntry")),
              QList<QMetaType>{QMetaType::fromType<disc::CardListEntry>()});
}

TEST(FindRecords, NamesOfNoRecordFindNothing) {
    for (const char* name :
         {"", "Receipt", "sales::LinesEntry", "vesk::Receipt", "::", "QString", "vesk::sales::"})
        EXPECT_TRUE(findRecords(QString::fromLatin1(name)).isEmpty()) << name;
}

} // namespace
} // namespace vesk::cli::test
