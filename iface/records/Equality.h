#pragma once

#include "Members.h"

#include <QList>

#include <type_traits>
#include <utility>

namespace vesk::records::detail {

// Compile-time member counter of the record macros: Slot<N> converts to every
// Slot<M> with M < N, so overload resolution picks the highest slot declared.
template <int N>
struct Slot : Slot<N - 1> {};
template <>
struct Slot<0> {};

// More members than any record will ever have.
using LastSlot = Slot<100>;

// Reaches the private helpers that the record macros generate: equality and
// the member list.
struct Fields {
    template <class Record>
    static bool equal(const Record& a, const Record& b) {
        return equalUpTo(a, b, std::make_integer_sequence<int, Record::vesk_field_count()>{});
    }

    // The members as membersOf() gives them: the base record's first.
    template <class Record>
    static QList<Member> members() {
        QList<Member> list;
        if constexpr (!std::is_void_v<typename Record::vesk_base_type>)
            list = members<typename Record::vesk_base_type>();
        appendUpTo<Record>(list, std::make_integer_sequence<int, Record::vesk_field_count()>{});
        return list;
    }

private:
    template <class Record, int... Index>
    static void appendUpTo(QList<Member>& list, std::integer_sequence<int, Index...>) {
        (list.append(Record::vesk_member(std::integral_constant<int, Index>{})), ...);
    }

    template <class Record, int... Index>
    static bool equalUpTo(const Record& a, const Record& b, std::integer_sequence<int, Index...>) {
        // Declared order; the first difference decides.
        return (Record::vesk_equal(std::integral_constant<int, Index>{}, a, b) && ...);
    }
};

} // namespace vesk::records::detail
