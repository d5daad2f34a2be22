#include "Members.h"

#include <QHash>

#include <mutex>

namespace vesk::records {
namespace {

// Filled while the libraries load, read afterwards from any thread.
struct Registry {
    std::mutex mutex;
    QHash<const QMetaObject*, QList<Member> (*)()> members;
};

Registry& registry() {
    static Registry instance;
    return instance;
}

} // namespace

QList<Member> membersOf(const QMetaObject& record) {
    Registry& known = registry();
    QList<Member> (*members)() = nullptr;
    {
        const std::lock_guard<std::mutex> lock(known.mutex);
        members = known.members.value(&record);
    }
    return members ? members() : QList<Member>();
}

namespace detail {

void registerMembers(const QMetaObject& record, QList<Member> (*members)()) {
    Registry& known = registry();
    const std::lock_guard<std::mutex> lock(known.mutex);
    known.members.insert(&record, members);
}

} // namespace detail
} // namespace vesk::records
