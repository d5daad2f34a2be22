#include "RequestLog.h"

#include "Log.h"

#include <masking/SecretMasking.h>

namespace vesk::emulator {

QString requestLine(const RequestRecord& record) {
    QString line = record.arrived.toUTC().toString(Qt::ISODateWithMs) + QLatin1Char(' ') +
                   record.what + QLatin1Char(' ') +
                   (record.status > 0 ? QString::number(record.status) : QStringLiteral("-"));
    if (record.status > 0 && record.status != 200)
        line += QStringLiteral(" code=%1").arg(record.code);
    line += QStringLiteral(" %1 ms").arg(record.ms);
    if (!record.fault.isEmpty())
        line += QStringLiteral(" fault=") + record.fault;
    if (!record.note.isEmpty())
        line += QLatin1Char(' ') + record.note;
    return line;
}

void logRequest(const RequestRecord& record) {
    qCInfo(lcEmulator).noquote() << requestLine(record);
}

void logBody(const QString& what, const char* direction, const QByteArray& body) {
    if (lcEmulatorBody().isDebugEnabled())
        qCDebug(lcEmulatorBody).noquote()
            << QStringLiteral("%1 %2: %3")
                   .arg(what, QLatin1String(direction), masking::maskSecrets(body));
}

void logNoReply(const QString& what) {
    qCDebug(lcEmulatorBody).noquote() << QStringLiteral("%1 reply: (none)").arg(what);
}

} // namespace vesk::emulator
