#pragma once

#include "Equality.h"
#include "Members.h"

#include <QMetaType>

namespace vesk::records {

/// Registers the records' meta-types under their qualified class names, so
/// that a host finds them by name (QMetaType::fromName) as soon as the
/// library is loaded, and makes their members known to membersOf(). Returns
/// true, to initialise a namespace-scope constant with.
template <class... Records>
bool registerMetaTypes() {
    (QMetaType::fromType<Records>().id(), ...);
    (detail::registerMembers(Records::staticMetaObject, &detail::Fields::members<Records>), ...);
    return true;
}

} // namespace vesk::records
