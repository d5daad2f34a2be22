#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

// How RestClient shows bodies and addresses in its log without giving away
// secrets. Internal to libmorvanetwork; exported only so that its tests can
// reach it.
namespace morva::network {

// A body as the log shows it.
//
// A JSON object or array is parsed and written back compact (Qt orders the
// members of each object by name), with:
//   - the values of "pinCode", "token" and "hash" replaced by "***";
//   - the card numbers, under "card", "cardNumber", "cardPan", "discCardId",
//     "discountCard" and "presentCard", cut to "***" and their last four
//     characters ("***" alone when the value has four characters or fewer).
// Strings and numbers are masked (a number counts as its text); an array under
// one of these keys has each of its strings and numbers masked the same way.
// Other values (objects, booleans, null) are walked as usual.
//
// Anything else is never shown: "<N bytes, not JSON>", or "<empty>".
QString maskSecrets(const QByteArray& body);

// An address as the log shows it: without its user name and password, and
// with the query's secret values masked by the same rules as maskSecrets().
QString maskUrl(const QUrl& url);

} // namespace morva::network
