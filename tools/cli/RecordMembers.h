#pragma once

#include <QList>
#include <QMetaObject>
#include <QMetaType>
#include <QString>
#include <QStringList>

namespace vesk::cli {

// One member of a record, as its declaration gives it.
struct RecordMember {
    QString key; // the JSON key, which is also the property's name
    // "integer", "number", "boolean", "string", "string list", "date-time", or
    // "list of <entry record's qualified name>"
    QString kind;
    bool optional = false; // may be absent (left out of a body), rather than always present
    const QMetaObject* entry = nullptr; // a list's entry record
};

// Whether `type` is one of the library's records: a gadget that carries the
// class info "serder:skipNull" = "true".
bool isRecord(const QMetaType& type);

// The records that `name` stands for: a qualified name
// ("vesk::disc::LinesEntryRequest"), one without the leading "vesk::"
// ("disc::LinesEntryRequest") or a class name alone ("LinesEntryRequest"),
// which may name a record of more than one service. Empty when none matches.
QList<QMetaType> findRecords(const QString& name);

// The names of every record of the operations, requests, responses and their
// entries, written as `name` is: qualified when it starts with "vesk::",
// without "vesk::" when it holds "::", else class names alone. For
// suggesting the record that a misspelt name meant.
QStringList recordNamesLike(const QString& name);

// The members of a record, base record's first, in declared order.
QList<RecordMember> recordMembers(const QMetaType& record);

} // namespace vesk::cli
