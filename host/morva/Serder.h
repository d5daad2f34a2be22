#pragma once

#include <QMetaObject>
#include <QSharedPointer>
#include <QVariant>

/// The host's record serialiser: turns a gadget into a variant map through its
/// meta-object's properties and back.
namespace serder {
namespace details {

/// How one gadget type maps to a variant map. Made once per type from its
/// meta-object; cheap to copy (the description is shared and immutable), and
/// usable from any thread.
class Strategy {
public:
    /// A strategy of no type: it writes and reads nothing.
    Strategy();
    /// The strategy of the gadget type described by `type`.
    static Strategy create(const QMetaObject& type);

    /// Writes into `out` a QVariantMap with one entry per property, in property
    /// order. When the type's class info "serder:skipNull" is "true", a property
    /// that reads as a null variant gets no entry.
    void serialize(QVariant* out, const void* record, const QMetaObject& type) const;

    /// Writes every property whose name is a key of the map `in` (a variant
    /// that holds no map counts as an empty one); other keys are ignored and
    /// properties without a key keep their value.
    void deserialize(void* record, const QVariant& in, const QMetaObject& type) const;

    /// The meta-object this strategy was made from; null for a default-made one.
    const QMetaObject* metaObject() const;

private:
    struct Description;
    explicit Strategy(QSharedPointer<const Description> description);
    const Description& describe(const QMetaObject& type, Strategy& scratch) const;

    QSharedPointer<const Description> d;
};

} // namespace details

/// The strategy of the gadget type T.
template <class T>
struct default_serder_type {
    /// Built once per type, at load for every type whose strategy the
    /// program names.
    static const details::Strategy strategy;
};

/// @cond
template <class T>
const details::Strategy
    default_serder_type<T>::strategy = details::Strategy::create(T::staticMetaObject);

/// @endcond

/// The record as a QVariantMap, through its type's strategy.
template <class T>
inline QVariant serialize(const T& record) {
    QVariant out;
    default_serder_type<T>::strategy.serialize(&out, &record, T::staticMetaObject);
    return out;
}

/// A record of type T filled from the map `variant`: keys that name no
/// member are ignored, members without a key keep their defaults.
template <class T>
inline T deserialize(const QVariant& variant) {
    T record;
    default_serder_type<T>::strategy.deserialize(&record, variant, T::staticMetaObject);
    return record;
}

} // namespace serder
