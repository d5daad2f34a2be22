#pragma once

#include <QMetaObject>
#include <QVariant>

namespace vesk::records {

/// Told about each member that was written a value that did not fit it
/// without loss (see the kinds' write() in FieldKinds.h). Writing a member
/// never fails and never logs: a caller that wants to know installs an
/// observer for the writes it makes on its own thread, as the typed reply
/// accessor does for its diagnostics.
class LossObserver {
public:
    /// A member of `record` named `member` was written `given`; `expected`
    /// says what would have fit, `kept` is what the member holds now.
    virtual void lost(const QMetaObject& record, const char* member, const char* expected,
                      const QVariant& given, const QVariant& kept) = 0;

protected:
    ~LossObserver() = default;
};

/// Installs an observer on the calling thread for the scope's life.
class ObservedLosses {
public:
    /// Installs `observer` until this is destroyed; the one before comes back then.
    explicit ObservedLosses(LossObserver* observer);
    ~ObservedLosses();
    ObservedLosses(const ObservedLosses&) = delete;
    ObservedLosses& operator=(const ObservedLosses&) = delete;

private:
    LossObserver* previous_;
};

/// Passes a loss to the thread's observer; does nothing without one. Called
/// by the members' property writes that the record macros generate.
void reportLoss(const QMetaObject& record, const char* member, const char* expected,
                const QVariant& given, const QVariant& kept);

} // namespace vesk::records
