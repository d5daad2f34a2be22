#pragma once

// Table-driven checks that every record of a service is declared and mapped
// as its member table says. A service's test names one row per record and
// instantiates the suite:
//
//     INSTANTIATE_TEST_SUITE_P(Disc, RecordTableTest, testing::Values(
//         recordRow<disc::CardListEntry>({"card", "partnerId"}, {},
//                                        R"({"card": "4000", "partnerId": 7})"),
//         ...), RecordTableTest::rowName);
//
// Compile RecordTable.cpp into the test program that instantiates it.

#include <morva/Serder.h>

#include <QByteArray>
#include <QMetaObject>
#include <QMetaType>
#include <QStringList>

#include <gtest/gtest.h>

#include <type_traits>

namespace vesk::test {

struct RecordRow {
    QMetaType type;
    const QMetaObject* metaObject = nullptr;
    QStringList properties;  // declared order, a base record's first
    QStringList defaultKeys; // keys of a default-made record's serialisation
    QByteArray fullObject;   // JSON object that sets every member, at every depth
    // The object as the record writes it back, when that differs from
    // fullObject (a date-time read from text is written as a QDateTime).
    QByteArray writtenBack;
};

template <class Record>
RecordRow recordRow(QStringList properties, QStringList defaultKeys, QByteArray fullObject,
                    QByteArray writtenBack = QByteArray()) {
    return RecordRow{QMetaType::fromType<Record>(), &Record::staticMetaObject,
                     std::move(properties),         std::move(defaultKeys),
                     std::move(fullObject),         std::move(writtenBack)};
}

class RecordTableTest : public testing::TestWithParam<RecordRow> {
public:
    // The record's class name without its namespaces, as the row's name.
    static std::string rowName(const testing::TestParamInfo<RecordRow>& info);
};

// Records are values: made, copied and moved freely.
template <class... Records>
constexpr bool areValues = ((std::is_default_constructible_v<Records> &&
                             std::is_copy_constructible_v<Records> &&
                             std::is_copy_assignable_v<Records> &&
                             std::is_move_constructible_v<Records> &&
                             std::is_move_assignable_v<Records>)&&...);

// Each record named has the strategy made from its own meta-object, as the
// library builds it for every entry and request body when it is loaded.
template <class Record>
void expectOwnStrategy() {
    EXPECT_EQ(serder::default_serder_type<Record>::strategy.metaObject(), &Record::staticMetaObject)
        << Record::staticMetaObject.className();
}

template <class... Records>
void expectOwnStrategies() {
    (expectOwnStrategy<Records>(), ...);
}

// Two JSON texts hold the same value (objects compare regardless of key order).
testing::AssertionResult sameJson(const QByteArray& actual, const QByteArray& expected);

} // namespace vesk::test
