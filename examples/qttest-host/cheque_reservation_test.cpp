// The till's reservation of a cheque's goods, tested with Qt Test and
// without a back office: the double answers as the test scripts it.

#include "ChequeReservation.h"

#include <vesk/testing/FakeBackOffice.h>
#include <vesk/vesk.h>

#include <QTest>

using vesk::testing::FakeBackOffice;

class ChequeReservationTest : public QObject {
    Q_OBJECT

private:
    FakeBackOffice* fake = nullptr;

private slots:
    // Once per process, before the till's code first makes a service client.
    void initTestCase() { fake = &FakeBackOffice::install(); }
    void cleanup() { fake->reset(); }

    void reservesAndNamesTheLinesSoldWithoutAReservation() {
        vesk::sales::ReserveChequeResponse reply;
        vesk::sales::ReserveLinesEntryResponse milk;
        milk.barcode = QStringLiteral("4601234000017");
        vesk::sales::ReserveLinesEntryResponse tea;
        tea.barcode = QStringLiteral("4601234000024");
        tea.existWithoutReservation = true;
        reply.lines = {milk, tea};
        fake->on(QStringLiteral("sales"), QStringLiteral("reserveCheque")).reply(reply);

        const till::Reservation reservation = till::reserveCheque(
            QStringLiteral("77"), QStringLiteral("c-1"), {milk.barcode, tea.barcode});

        QCOMPARE(reservation.state, till::Reservation::State::Reserved);
        QCOMPARE(reservation.unreserved, QStringList{tea.barcode});
    }

    void reportsTheBackOfficesRefusal() {
        fake->on(QStringLiteral("reserveCheque"))
            .error(3001, QStringLiteral("The store is closed"), 409);

        const till::Reservation reservation =
            till::reserveCheque(QStringLiteral("77"), QStringLiteral("c-2"), {QStringLiteral("1")});

        QCOMPARE(reservation.state, till::Reservation::State::Refused);
        QCOMPARE(reservation.message, QStringLiteral("The store is closed"));
    }

    void isUncertainWhenTheConnectionIsLostAfterSending() {
        fake->on(QStringLiteral("reserveCheque")).fail(vesk::CallOutcome::Failure::ConnectionLost);

        const till::Reservation reservation =
            till::reserveCheque(QStringLiteral("77"), QStringLiteral("c-3"), {QStringLiteral("1")});

        QCOMPARE(reservation.state, till::Reservation::State::Uncertain);
        QVERIFY2(reservation.message.startsWith(QStringLiteral("The connection to ")),
                 qPrintable(reservation.message));
    }

    void sendsEachBarcodeAsANumberedLineOfTheCheque() {
        fake->on(QStringLiteral("reserveCheque")).reply(vesk::sales::ReserveChequeResponse());

        till::reserveCheque(QStringLiteral("77"), QStringLiteral("c-4"),
                            {QStringLiteral("A"), QStringLiteral("B")});

        const auto sent =
            fake->requests<vesk::sales::ReserveChequeRequest>(QStringLiteral("reserveCheque"));
        QCOMPARE(sent.size(), 1);
        QCOMPARE(sent[0].storeId, QStringLiteral("77"));
        QCOMPARE(sent[0].chequeId, QStringLiteral("c-4"));
        QCOMPARE(sent[0].lines.size(), 2);
        QCOMPARE(sent[0].lines[1].barcode, QStringLiteral("B"));
        QCOMPARE(sent[0].lines[1].lineNum, 2);
    }
};

QTEST_APPLESS_MAIN(ChequeReservationTest)
#include "cheque_reservation_test.moc"
