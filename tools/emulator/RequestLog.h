#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace vesk::emulator {

// One request as the log shows it, in one line on "vesk.emulator" at info:
//   2026-11-20T09:30:00.126Z itemInfo 200 3 ms
//   2026-11-20T09:30:00.127Z itemInfo 404 code=1001 2 ms
//   2026-11-20T09:30:01.130Z commitCheque - 1000 ms fault=hang
//   2026-11-20T09:30:01.139Z commitCheque - 4 ms fault=reset,after operation=200
//   2026-11-20T09:30:01.139Z commitCheque 200 1 ms replayed
//   2026-11-20T09:30:02.512Z itemInfo 200 (not delivered: client closed) 502 ms fault=delay
//   2026-11-20T09:30:02.540Z POST /_emulator/faults 201 0 ms
// The time is when the line was written, at the end of the request (UTC,
// milliseconds; the request arrived its duration earlier), so the lines are
// in the order of their times; then the operation (or the method and path of
// any other request); the status, "-" when no reply went out whole or at
// all; the code of a refusal that carries one; whether the reply could not be
// delivered; how long the request took; the fault played, if any; and a
// note: what the operation answered when a fault withheld it, whether the
// reply was a repeat's ("replayed", "refused: same cheque, different body").
struct RequestRecord {
    QString what = QString();
    int status = 0;                         // 0: no reply
    std::optional<int> code = std::nullopt; // a refusal's code, when it has one
    qint64 ms = 0;
    QString fault = QString(); // the fault played
    QString note = QString();
    QString undelivered = QString(); // why the reply did not reach the client: "client closed"
};

QString requestLine(const QDateTime& written, const RequestRecord& record);

// Writes the record's line, stamped now: lines written one after the other
// never have times that go backwards, even if the clock does.
void logRequest(const RequestRecord& record);

// A body on "vesk.emulator.body" at debug, secrets masked:
//   itemInfo request: {"barcode":"4601234000017"}
void logBody(const QString& what, const char* direction, const QByteArray& body);
// What in a request its record does not take, on "vesk.emulator" at warning
// (the values of secret keys masked):
//   itemInfo request does not fit its record: $.barCod names no member of
//   vesk::sales::ItemInfoRequest; did you mean barcode?
void logFindings(const QString& what, const QStringList& findings);
// "itemInfo reply: (none)", for a fault that sends none.
void logNoReply(const QString& what);

} // namespace vesk::emulator
