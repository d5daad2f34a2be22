#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace vesk::emulator {

// One request as the log shows it, in one line on "vesk.emulator" at info:
//   2026-11-20T09:30:00.123Z itemInfo 200 3 ms
//   2026-11-20T09:30:00.125Z itemInfo 404 code=1001 2 ms
//   2026-11-20T09:30:00.130Z commitCheque - 1000 ms fault=hang
//   2026-11-20T09:30:00.135Z commitCheque - 4 ms fault=reset,after operation=200
//   2026-11-20T09:30:00.138Z commitCheque 200 1 ms replayed
//   2026-11-20T09:30:00.140Z GET /_emulator/health 200 0 ms
// The time is when the request arrived (UTC, milliseconds); then the
// operation (or the method and path of any other request); the status, "-"
// when no reply went out whole or at all; the service's code for an error
// reply; how long the request took; the fault played, if any; and a note:
// what the operation answered when a fault withheld it, whether the reply
// was a repeat's ("replayed", "refused: same cheque, different body").
struct RequestRecord {
    QDateTime arrived;
    QString what;
    int status = 0; // 0: no reply
    int code = 0;   // shown when status is not 200
    qint64 ms = 0;
    QString fault;
    QString note = QString();

    // A request that arrives now.
    static RequestRecord arrivingNow(const QString& what, int status = 0, int code = 0) {
        RequestRecord record;
        record.arrived = QDateTime::currentDateTimeUtc();
        record.what = what;
        record.status = status;
        record.code = code;
        return record;
    }
};

QString requestLine(const RequestRecord& record);
void logRequest(const RequestRecord& record);

// A body on "vesk.emulator.body" at debug, secrets masked:
//   itemInfo request: {"barcode":"4601234000017"}
void logBody(const QString& what, const char* direction, const QByteArray& body);
// "itemInfo reply: (none)", for a fault that sends none.
void logNoReply(const QString& what);

} // namespace vesk::emulator
