#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

namespace vesk::cli {

// One member of a record, as its meta-object shows it.
struct RecordMember {
    QString key;   // the property's name, which is the JSON key
    QString kind;  // "integer", "number", "boolean", "string", "string list", "list", "date-time"
    bool optional; // may be absent (left out of a body), rather than always present
};

// Whether `type` is one of the library's records: a gadget that carries the
// class info "serder:skipNull" = "true".
bool isRecord(const QMetaType& type);

// The records that `name` stands for: a qualified name
// ("vesk::disc::LinesEntryRequest"), one without the leading "vesk::"
// ("disc::LinesEntryRequest") or a class name alone ("LinesEntryRequest"),
// which may name a record of more than one service. Empty when none matches.
QList<QMetaType> findRecords(const QString& name);

// The members of a record, base record's first, in declared order.
QList<RecordMember> recordMembers(const QMetaType& record);

} // namespace vesk::cli
