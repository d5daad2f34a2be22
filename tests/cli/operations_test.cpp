// The table of operations: sixteen, each named once, each with the records
// and the client that its member function has.

#include <cli/Operations.h>
#include <cli/RecordMembers.h>

#include <vesk/vesk.h>

#include <QSet>

#include <gtest/gtest.h>

namespace vesk::cli::test {
namespace {

TEST(Operations, SixteenEachNamedOncePerService) {
    QSet<QString> names;
    for (const Operation& operation : operations())
        names.insert(operation.service + QLatin1Char('/') + operation.name);
    EXPECT_EQ(operations().size(), 16);
    EXPECT_EQ(names.size(), 16);
    EXPECT_EQ(serviceNames(), (QStringList{QStringLiteral("disc"), QStringLiteral("loyalty"),
                                           QStringLiteral("sales")}));
    EXPECT_EQ(operationsOf(QStringLiteral("disc")).size(), 3);
    EXPECT_EQ(operationsOf(QStringLiteral("loyalty")).size(), 10);
    EXPECT_EQ(operationsOf(QStringLiteral("sales")).size(), 3);
}

TEST(Operations, RecordsAndClientBelongToTheOperationsService) {
    for (const Operation& operation : operations()) {
        const QString prefix = QStringLiteral("vesk::%1::").arg(operation.service);
        EXPECT_TRUE(QString::fromLatin1(operation.request->className()).startsWith(prefix))
            << operation.name.toStdString();
        EXPECT_TRUE(QString::fromLatin1(operation.response->className()).startsWith(prefix))
            << operation.name.toStdString();
        EXPECT_TRUE(isRecord(QMetaType::fromName(operation.request->className())))
            << operation.request->className();
        EXPECT_TRUE(isRecord(QMetaType::fromName(operation.response->className())))
            << operation.response->className();
        EXPECT_EQ(QString::fromLatin1(operation.client->configKey),
                  QStringLiteral("Vesk.%1:url").arg(operation.service));
    }
}

TEST(Operations, TakenFromTheClientsMemberFunctions) {
    const Operation* balance =
        findOperation(QStringLiteral("loyalty"), QStringLiteral("getCardBalance"));
    ASSERT_NE(balance, nullptr);
    EXPECT_EQ(balance->request, &loyalty::CardBalanceRequest::staticMetaObject);
    EXPECT_EQ(balance->response, &loyalty::CardBalanceResponse::staticMetaObject);
    EXPECT_EQ(balance->client, &loyalty::Api::service);

    const Operation* cashier =
        findOperation(QStringLiteral("loyalty"), QStringLiteral("cashierAdditionalInfo"));
    const Operation* cheque =
        findOperation(QStringLiteral("loyalty"), QStringLiteral("chequeAdditionalInfo"));
    ASSERT_NE(cashier, nullptr);
    ASSERT_NE(cheque, nullptr);
    EXPECT_EQ(cashier->request, cheque->request);
    EXPECT_EQ(cashier->response, cheque->response);
}

TEST(Operations, UnknownNamesFindNothing) {
    EXPECT_EQ(findOperation(QStringLiteral("sales"), QStringLiteral("discCalc")), nullptr);
    EXPECT_EQ(findOperation(QStringLiteral("stock"), QStringLiteral("itemInfo")), nullptr);
    EXPECT_EQ(findOperation(QString(), QString()), nullptr);
    EXPECT_TRUE(operationsOf(QStringLiteral("stock")).isEmpty());
}

} // namespace
} // namespace vesk::cli::test
