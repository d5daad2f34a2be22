#pragma once

#include <morva/Http.h>
#include <morva/Log4Qt.h>

#include "json/ReplyJson.h"

#include <QMetaObject>
#include <QString>
#include <QVariant>

#include <vector>

namespace vesk::detail {

// Warnings about replies that the call frame reads as specified but that
// hide a problem an integrator needs to see: a 200 whose body is no JSON
// object (read as an empty one), an error reply without the service's code
// and message, reply members that did not fit their record. Each names the
// URL and shows the status and the start of the body with secrets masked.
// Nothing here changes a result.
namespace diagnostics {

// The body of a 200 reply is not a JSON object.
void replyNotAnObject(const Log4Qt::Logger& logger, const QString& url,
                      const http::Response& response, json::Reply::Shape shape);

// A non-200 reply without a numeric "code" and a string "userMsg".
void errorWithoutServiceFields(const Log4Qt::Logger& logger, const QString& url,
                               const http::Response& response, bool noCode, bool noMessage,
                               int code, const QString& message);

// A reply member that did not fit its record member.
struct Loss {
    const QMetaObject* record;
    const char* member;
    const char* expected;
    QVariant given;
    QVariant kept;
};

// The members of one reply that did not fit, one line each (at most
// maxLossLines, then a count of the rest).
void membersLost(const Log4Qt::Logger& logger, const QString& url, const std::vector<Loss>& losses);
constexpr std::size_t maxLossLines = 20;

// How much of a body a warning shows.
constexpr int bodyExcerptChars = 200;

} // namespace diagnostics
} // namespace vesk::detail
