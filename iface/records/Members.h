#pragma once

/// @file
/// The members of a record as data: for tools that describe, check or
/// generate bodies (a contract document, strict request reading) without
/// knowing the record types at compile time.

#include <QList>
#include <QMetaObject>

namespace vesk::records {

/// The JSON value that a member is written as.
enum class JsonType {
    Integer,    ///< a number without fraction that fits 32 bits
    Number,     ///< any number
    Boolean,    ///< true or false
    String,     ///< text
    StringList, ///< an array of texts
    List,       ///< an array of objects, each an entry record (see Member::entry)
    DateTime,   ///< an ISO 8601 date and time as text
};

/// One member of a record, as its declaration gives it.
struct Member {
    const char* key;          ///< the JSON key, which is also the member's and property's name
    JsonType type;            ///< what the key's value is
    bool optional;            ///< left out of a body when absent; else always written
    const QMetaObject* entry; ///< the entry record of a List member; null for other types
};

/// The members of a record, the base record's first, in declared order. The
/// records of the three services are known from the moment the library is
/// loaded; a record declared elsewhere is known once registered with
/// registerMetaTypes() (Registration.h). Empty for anything else.
QList<Member> membersOf(const QMetaObject& record);

namespace detail {
/// Makes a record's members known to membersOf(); called by registerMetaTypes().
void registerMembers(const QMetaObject& record, QList<Member> (*members)());
} // namespace detail

} // namespace vesk::records
