// The test records' meta-objects are generated into this unit's library, and
// their meta-types are registered at load, as the services' records are.
#include "TestRecords.h"

#include <vesk/records/Registration.h>

namespace {
const bool registered =
    vesk::records::registerMetaTypes<vesk::test::SampleEntry, vesk::test::EveryKind,
                                     vesk::test::OnlyOptional, vesk::test::DerivedEntry,
                                     vesk::test::Reply, vesk::test::EmptyRecord>();
}
