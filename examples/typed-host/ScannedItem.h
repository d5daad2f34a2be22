#pragma once

#include <vesk/vesk.h>

namespace till {

// A record of the till's own, declared with the library's macros. moc has to
// see the declaration, which the VeskIface package arranges when AUTOMOC is
// on; keep such records in headers, where moc looks for them.
class ScannedItem {
    VESK_RECORD(ScannedItem)
    VESK_FIELD(String, barcode)
    VESK_FIELD(Integer, count)
};

} // namespace till
