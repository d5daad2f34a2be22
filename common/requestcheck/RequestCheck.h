#pragma once

#include <QList>
#include <QMetaObject>
#include <QString>
#include <QVariantMap>

namespace vesk::check {

// One thing in a request object that the record would not take as it is.
struct RequestProblem {
    QString path; // the JSON path of the key: "$.lines[0].quantity"
    // "names no member of vesk::disc::LinesEntryRequest", with "; did you mean
    // quantity?" when a member's key is close; "17 is not text"
    QString problem;

    QString text() const { return path + QLatin1Char(' ') + problem; }
    bool operator==(const RequestProblem& other) const {
        return path == other.path && problem == other.problem;
    }
};

// Everything in `request`, at every depth, that the record `record` would
// drop or change when filled from it: keys that name no member, and values
// that do not convert to their member's kind without loss (text for a
// number, a fraction or an integer outside 32 bits for an integer, an object
// for a list, a list for text, null for anything). Keys in alphabetical
// order, entries in list order.
QList<RequestProblem> checkRequest(const QVariantMap& request, const QMetaObject& record);

} // namespace vesk::check
