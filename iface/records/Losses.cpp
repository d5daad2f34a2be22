#include "Losses.h"

namespace vesk::records {
namespace {

thread_local LossObserver* observer = nullptr;

} // namespace

ObservedLosses::ObservedLosses(LossObserver* installed)
    : previous_(observer) {
    observer = installed;
}

ObservedLosses::~ObservedLosses() {
    observer = previous_;
}

void reportLoss(const QMetaObject& record, const char* member, const char* expected,
                const QVariant& given, const QVariant& kept) {
    if (observer)
        observer->lost(record, member, expected, given, kept);
}

} // namespace vesk::records
