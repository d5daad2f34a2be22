// The versions of the store's tables that a database file may hold.

#include <emulator/Store.h>

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vesk::emulator::test {
namespace {

// Runs `statements` on the database file outside of any store.
void alter(const QString& file, const QStringList& statements) {
    const QString name = QStringLiteral("store-schema-test");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(file);
        ASSERT_TRUE(db.open());
        for (const QString& statement : statements) {
            QSqlQuery query(db);
            ASSERT_TRUE(query.exec(statement)) << statement.toStdString();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
}

TEST(StoreSchemaTest, DatabaseOfTheVersionBeforeTheFirstAnswersOpensAndKeepsThemFromThenOn) {
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("state.db"));
    QString error;
    {
        Store made;
        ASSERT_TRUE(made.open(file, &error)) << error.toStdString();
    }
    alter(file, {QStringLiteral("DROP TABLE answered_calls"),
                 QStringLiteral("UPDATE meta SET value = '1' WHERE key = 'schema'")});

    Store store;
    ASSERT_TRUE(store.open(file, &error)) << error.toStdString();
    store.transaction([&] {
        store.saveAnsweredCall(
            {QStringLiteral("commitCheque"), QStringLiteral("C-1"), QString(), "digest", "{}"});
    });
    const std::optional<Store::AnsweredCall> kept = store.transaction([&] {
        return store.answeredCall(QStringLiteral("commitCheque"), QStringLiteral("C-1"), QString());
    });
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->bodyDigest, "digest");
}

TEST(StoreSchemaTest, DatabaseOfALaterVersionIsRefused) {
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("state.db"));
    QString error;
    {
        Store made;
        ASSERT_TRUE(made.open(file, &error)) << error.toStdString();
    }
    alter(file, {QStringLiteral("UPDATE meta SET value = '3' WHERE key = 'schema'")});
    Store store;
    EXPECT_FALSE(store.open(file, &error));
    EXPECT_EQ(
        error,
        QStringLiteral("cannot use database %1: it holds the tables of schema 3, not 2").arg(file));
}

} // namespace
} // namespace vesk::emulator::test
