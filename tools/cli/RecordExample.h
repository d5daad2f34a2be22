#pragma once

#include <QMetaObject>
#include <QString>
#include <QVariantMap>

namespace vesk::cli {

// A request body for `record` with every member, optional ones too, each a
// typed placeholder: 0, 0.0, false, "", [] for a string list, an ISO date and
// time, and a list of entries as one entry with its own members. It passes
// checkRequest() for the record without a problem.
QVariantMap recordExample(const QMetaObject& record);

// recordExample() as indented JSON in the record's order of members.
QString recordExampleJson(const QMetaObject& record);

} // namespace vesk::cli
