#pragma once

/// @file
/// How a record is declared. This is the one place that defines the record
/// macros; everything a record has is generated from its declaration.
///
///     class LinesEntryRequest {
///         VESK_RECORD(LinesEntryRequest)
///         VESK_FIELD(String, barcode)
///         VESK_FIELD(OptionalString, colorId)
///         VESK_FIELD(List<DiscountsEntryRequest>, discounts)
///         VESK_FIELD(Integer, lineNum)
///         VESK_FIELD(Number, retailPrice)
///         VESK_FIELD(Quantity, qty)
///     };
///
///     class CalcBonusAmountResponse : public CalcBonusAmountRequest {
///         VESK_DERIVED_RECORD(CalcBonusAmountResponse, CalcBonusAmountRequest)
///         ...
///     };
///
/// VESK_RECORD(Class) opens a record: it makes the class a gadget with the
/// class info "serder:skipNull" = "true" and gives it == and != over its
/// members in declared order.
///
/// VESK_DERIVED_RECORD(Class, Base) opens a record that extends the record
/// Base (which the class must derive from publicly): Base's properties come
/// first in the meta-object, and equality compares Base's members first.
///
/// VESK_FIELD(Kind, key) declares one member, one line each, in the order of
/// the JSON object: the public data member `key` of the kind's C++ type, the
/// QVariant property `key` whose read and write convert as the kind says, and
/// the member's place in equality and in membersOf() (Members.h). The kinds
/// (FieldKinds.h):
///
///     kind                    member type             equality
///     Integer                 int                     exact
///     Number                  double                  within 0.005
///     Quantity                double                  within 0.0005
///     ExactNumber             double                  exact
///     Boolean                 bool                    exact
///     String                  QString                 exact
///     StringList              QStringList             exact
///     List<Entry>             QList<Entry>            element by element
///     DateTime                QVariant (a QDateTime)  as variants
///     Optional<Kind> and the  std::optional<...>      both absent, or both
///     Optional... aliases                             present and equal
///
/// Writing a member never fails: a value that does not fit leaves 0, false or
/// empty. Such a write is passed to the thread's LossObserver, if one is
/// installed (Losses.h), for diagnostics; nothing else comes of it.
///
/// A record's meta-type is Qt's own for the class, named by its qualified
/// name ("vesk::disc::CardListEntry").
///
/// Every name that the macros add besides the members and their properties
/// starts with `vesk_`; keep that prefix out of member names.

#include "Equality.h"
#include "FieldKinds.h"
#include "Losses.h"

#include <QObject>
#include <QVariant>

#ifdef Q_MOC_RUN
// moc only needs the gadget, its class info and the properties.
#define VESK_RECORD(vesk_class_) Q_GADGET Q_CLASSINFO("serder:skipNull", "true")
#define VESK_DERIVED_RECORD(vesk_class_, vesk_base_) VESK_RECORD(vesk_class_)
#define VESK_FIELD(vesk_kind_, vesk_key_)                                                          \
    Q_PROPERTY(QVariant vesk_key_ READ vesk_read_##vesk_key_ WRITE vesk_write_##vesk_key_)
#else

/// Opens a record: a gadget with == and != over its members (see above).
#define VESK_RECORD(vesk_class_)                                                                   \
    VESK_RECORD_BODY_(vesk_class_)                                                                 \
    using vesk_base_type = void;                                                                   \
    friend bool operator==(const vesk_class_& vesk_a_, const vesk_class_& vesk_b_) {               \
        return ::vesk::records::detail::Fields::equal(vesk_a_, vesk_b_);                           \
    }                                                                                              \
    friend bool operator!=(const vesk_class_& vesk_a_, const vesk_class_& vesk_b_) {               \
        return !(vesk_a_ == vesk_b_);                                                              \
    }                                                                                              \
                                                                                                   \
public:

/// Opens a record that extends the record `vesk_base_` (see above).
#define VESK_DERIVED_RECORD(vesk_class_, vesk_base_)                                               \
    VESK_RECORD_BODY_(vesk_class_)                                                                 \
    using vesk_base_type = vesk_base_;                                                             \
    friend bool operator==(const vesk_class_& vesk_a_, const vesk_class_& vesk_b_) {               \
        return static_cast<const vesk_base_&>(vesk_a_) ==                                          \
                   static_cast<const vesk_base_&>(vesk_b_) &&                                      \
               ::vesk::records::detail::Fields::equal(vesk_a_, vesk_b_);                           \
    }                                                                                              \
    friend bool operator!=(const vesk_class_& vesk_a_, const vesk_class_& vesk_b_) {               \
        return !(vesk_a_ == vesk_b_);                                                              \
    }                                                                                              \
                                                                                                   \
public:

/// What both openers share; not for use on its own. The members are counted
/// at compile time: each VESK_FIELD finds the count so far by overload
/// resolution on vesk_counter (the most derived Slot wins) and declares the
/// overload for the next slot.
#define VESK_RECORD_BODY_(vesk_class_)                                                             \
    Q_GADGET                                                                                       \
    Q_CLASSINFO("serder:skipNull", "true")                                                         \
    friend struct ::vesk::records::detail::Fields;                                                 \
    using vesk_record_type = vesk_class_;                                                          \
    static constexpr ::std::integral_constant<int, 0> vesk_counter(                                \
        ::vesk::records::detail::Slot<0>) {                                                        \
        return {};                                                                                 \
    }                                                                                              \
    static constexpr int vesk_field_count() {                                                      \
        return decltype(vesk_counter(::vesk::records::detail::LastSlot{}))::value;                 \
    }

/// Declares one member of the kind `vesk_kind_` under the JSON key `vesk_key_` (see above).
#define VESK_FIELD(vesk_kind_, vesk_key_)                                                          \
public:                                                                                            \
    ::vesk::field::vesk_kind_::Value vesk_key_{};                                                  \
                                                                                                   \
private:                                                                                           \
    QVariant vesk_read_##vesk_key_() const {                                                       \
        return ::vesk::field::vesk_kind_::read(vesk_key_);                                         \
    }                                                                                              \
    void vesk_write_##vesk_key_(const QVariant& vesk_value_) {                                     \
        if (!::vesk::field::vesk_kind_::write(vesk_key_, vesk_value_))                             \
            ::vesk::records::reportLoss(staticMetaObject, #vesk_key_,                              \
                                        ::vesk::field::vesk_kind_::expected, vesk_value_,          \
                                        ::vesk::field::vesk_kind_::read(vesk_key_));               \
    }                                                                                              \
    static constexpr int vesk_index_##vesk_key_ =                                                  \
        decltype(vesk_counter(::vesk::records::detail::LastSlot{}))::value;                        \
    static constexpr ::std::integral_constant<int, vesk_index_##vesk_key_ + 1> vesk_counter(       \
        ::vesk::records::detail::Slot<vesk_index_##vesk_key_ + 1>) {                               \
        return {};                                                                                 \
    }                                                                                              \
    static bool vesk_equal(::std::integral_constant<int, vesk_index_##vesk_key_>,                  \
                           const vesk_record_type& vesk_a_, const vesk_record_type& vesk_b_) {     \
        return ::vesk::field::vesk_kind_::equal(vesk_a_.vesk_key_, vesk_b_.vesk_key_);             \
    }                                                                                              \
    static ::vesk::records::Member vesk_member(                                                    \
        ::std::integral_constant<int, vesk_index_##vesk_key_>) {                                   \
        return {#vesk_key_, ::vesk::field::vesk_kind_::json, ::vesk::field::vesk_kind_::optional,  \
                ::vesk::field::vesk_kind_::entry()};                                               \
    }                                                                                              \
                                                                                                   \
public:

#endif // Q_MOC_RUN
