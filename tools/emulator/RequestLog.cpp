#include "RequestLog.h"

#include "Log.h"

#include <masking/SecretMasking.h>

#include <mutex>

namespace vesk::emulator {

QString requestLine(const QDateTime& written, const RequestRecord& record) {
    QString line = written.toUTC().toString(Qt::ISODateWithMs) + QLatin1Char(' ') + record.what +
                   QLatin1Char(' ') +
                   (record.status > 0 ? QString::number(record.status) : QStringLiteral("-"));
    if (record.code)
        line += QStringLiteral(" code=%1").arg(*record.code);
    if (!record.undelivered.isEmpty())
        line += QStringLiteral(" (not delivered: %1)").arg(record.undelivered);
    line += QStringLiteral(" %1 ms").arg(record.ms);
    if (!record.fault.isEmpty())
        line += QStringLiteral(" fault=") + record.fault;
    if (!record.note.isEmpty())
        line += QLatin1Char(' ') + record.note;
    return line;
}

void logRequest(const RequestRecord& record) {
    if (!lcEmulator().isInfoEnabled())
        return;
    // The stamp is taken and the line written under one lock, so that the
    // workers' lines come out in the order of their times.
    static std::mutex mutex;
    static QDateTime last;
    const std::lock_guard<std::mutex> lock(mutex);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    last = last.isValid() && now < last ? last : now; // a clock set back does not reorder
    qCInfo(lcEmulator).noquote() << requestLine(last, record);
}

void logBody(const QString& what, const char* direction, const QByteArray& body) {
    if (lcEmulatorBody().isDebugEnabled())
        qCDebug(lcEmulatorBody).noquote()
            << QStringLiteral("%1 %2: %3")
                   .arg(what, QLatin1String(direction), masking::maskSecrets(body));
}

void logFindings(const QString& what, const QStringList& findings) {
    qCWarning(lcEmulator).noquote() << QStringLiteral("%1 request does not fit its record: %2")
                                           .arg(what, findings.join(QStringLiteral("; ")));
}

void logNoReply(const QString& what) {
    qCDebug(lcEmulatorBody).noquote() << QStringLiteral("%1 reply: (none)").arg(what);
}

} // namespace vesk::emulator
