#pragma once

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

// Reaches the private helpers that the record macros generate.
struct Fields {
    template <class Record>
    static bool equal(const Record& a, const Record& b) {
        return equalUpTo(a, b, std::make_integer_sequence<int, Record::vesk_field_count()>{});
    }

private:
    template <class Record, int... Index>
    static bool equalUpTo(const Record& a, const Record& b, std::integer_sequence<int, Index...>) {
        // Declared order; the first difference decides.
        return (Record::vesk_equal(std::integral_constant<int, Index>{}, a, b) && ...);
    }
};

} // namespace vesk::records::detail
