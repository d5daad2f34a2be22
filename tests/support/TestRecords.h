#pragma once

// Records that exist only for the tests of the record machinery: between
// them they use every member kind, an optional-only record, a nested entry
// and a derived record.

#include <vesk/records/Record.h>

namespace vesk::test {

class SampleEntry {
    VESK_RECORD(SampleEntry)
    VESK_FIELD(OptionalString, name)
    VESK_FIELD(Integer, rank)
    VESK_FIELD(Quantity, qty)
};

class EveryKind {
    VESK_RECORD(EveryKind)
    VESK_FIELD(Integer, integer)
    VESK_FIELD(OptionalInteger, optionalInteger)
    VESK_FIELD(Number, number)
    VESK_FIELD(OptionalNumber, optionalNumber)
    VESK_FIELD(Quantity, quantity)
    VESK_FIELD(OptionalQuantity, optionalQuantity)
    VESK_FIELD(ExactNumber, exactNumber)
    VESK_FIELD(Boolean, boolean)
    VESK_FIELD(OptionalBoolean, optionalBoolean)
    VESK_FIELD(String, string)
    VESK_FIELD(OptionalString, optionalString)
    VESK_FIELD(StringList, stringList)
    VESK_FIELD(List<SampleEntry>, entries)
    VESK_FIELD(OptionalList<SampleEntry>, optionalEntries)
    VESK_FIELD(DateTime, dateTime)
};

class OnlyOptional {
    VESK_RECORD(OnlyOptional)
    VESK_FIELD(OptionalString, text)
    VESK_FIELD(OptionalInteger, count)
    VESK_FIELD(OptionalNumber, amount)
    VESK_FIELD(OptionalBoolean, flag)
    VESK_FIELD(OptionalList<SampleEntry>, entries)
};

class DerivedEntry : public SampleEntry {
    VESK_DERIVED_RECORD(DerivedEntry, SampleEntry)
    VESK_FIELD(OptionalNumber, extra)
    VESK_FIELD(String, note)
};

class Reply {
    VESK_RECORD(Reply)
    VESK_FIELD(String, text)
    VESK_FIELD(Integer, count)
};

class EmptyRecord {
    VESK_RECORD(EmptyRecord)
};

} // namespace vesk::test
