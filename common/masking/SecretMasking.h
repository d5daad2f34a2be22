#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>
#include <QUrl>
#include <QVariant>

// How logs show bodies, addresses and values without giving away secrets or
// a card holder's personal data. One piece of code, compiled into both the
// transport stand-in (for its exchange log) and the client library (for its
// diagnostics), since on a till the host's own transport replaces ours.
namespace vesk::masking {

// What a key's value is. Keys compare in any letter case.
//   Hidden:   "pinCode", "token", "hash": the whole value is "***", whatever
//             its JSON type.
//   Card:     the card numbers of the three services ("card", "cardNumber",
//             "cardPan", "discCardId", "discountCard", "presentCard",
//             "boutiqueCardId"): text and numbers keep their last four
//             characters ("***1234"; "***" alone for four or fewer), inside
//             lists and objects too; any other value is "***".
//   Personal: a holder's names, phone, e-mail and birth date ("fio",
//             "clientFIO", "firstName", "lastName", "middleName", "phone",
//             "email", "birthDate", ...): the whole value is "***".
enum class Secret { None, Hidden, Card, Personal };
Secret secretOf(QStringView key);

// A body as the log shows it. A JSON object or array is written back compact
// (Qt orders each object's members by name) with the values of secret keys
// masked; anything else is never shown: "<N bytes, not JSON>", or "<empty>".
QString maskSecrets(const QByteArray& body);

// An address as the log shows it: without its user name and password, and
// with the query's secret values masked.
QString maskUrl(const QUrl& url);

// One member's value as a diagnostic shows it: as compact JSON (text quoted),
// cut to about 80 characters, or masked by the key's rule.
QString maskedValue(QStringView key, const QVariant& value);

// The start of a body, at most maxChars characters, for a diagnostic. A JSON
// body is masked as maskSecrets() does, then cut. Any other body (HTML, text,
// a cut JSON object, bytes) is shown as text with control characters escaped
// and, since it cannot be parsed, with every run of 12 or more digits cut to
// its last four and the quoted value after any secret key hidden.
QString excerpt(const QByteArray& body, int maxChars);

} // namespace vesk::masking
