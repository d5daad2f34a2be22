#include "ReplyDiagnostics.h"

#include <masking/SecretMasking.h>

namespace vesk::detail::diagnostics {
namespace {

QString bodyOf(const http::Response& response) {
    if (response.body.isEmpty())
        return QStringLiteral("<empty>");
    return masking::excerpt(response.body, bodyExcerptChars);
}

} // namespace

void replyNotAnObject(const Log4Qt::Logger& logger, const QString& url,
                      const http::Response& response, json::Reply::Shape shape) {
    const QString what = shape == json::Reply::Shape::Empty ? QStringLiteral("an empty body")
                         : shape == json::Reply::Shape::Array
                             ? QStringLiteral("a JSON array")
                             : QStringLiteral("a body that is not JSON");
    logger.warn(QStringLiteral("%1 answered %2 with %3, not a JSON object; the reply reads as an "
                               "empty object. Body (%4 bytes): %5")
                    .arg(url, QString::number(response.statusCode), what,
                         QString::number(response.body.size()), bodyOf(response)));
}

void errorWithoutServiceFields(const Log4Qt::Logger& logger, const QString& url,
                               const http::Response& response, bool noCode, bool noMessage,
                               int code, const QString& message) {
    QStringList missing;
    if (noCode)
        missing << QStringLiteral("a numeric \"code\"");
    if (noMessage)
        missing << QStringLiteral("a string \"userMsg\"");
    logger.warn(QStringLiteral("%1 answered %2 without %3; raising vesk::Exception with code %4 "
                               "and message \"%5\". Body (%6 bytes): %7")
                    .arg(url, QString::number(response.statusCode),
                         missing.join(QStringLiteral(" or ")), QString::number(code), message,
                         QString::number(response.body.size()), bodyOf(response)));
}

void membersLost(const Log4Qt::Logger& logger, const QString& url,
                 const std::vector<Loss>& losses) {
    std::size_t shown = 0;
    for (const Loss& loss : losses) {
        if (shown++ == maxLossLines) {
            logger.warn(QStringLiteral("%1: %2 more reply members did not fit their records")
                            .arg(url, QString::number(losses.size() - maxLossLines)));
            return;
        }
        const QString member = QString::fromLatin1(loss.member);
        logger.warn(QStringLiteral("%1: reply member %2.%3 is %4, which is not %5; the record "
                                   "holds %6")
                        .arg(url, QString::fromLatin1(loss.record->className()), member,
                             masking::maskedValue(member, loss.given),
                             QString::fromLatin1(loss.expected),
                             masking::maskedValue(member, loss.kept)));
    }
}

} // namespace vesk::detail::diagnostics
