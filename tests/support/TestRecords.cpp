// The test records' meta-objects are generated into this unit's library.
#include "TestRecords.h"
