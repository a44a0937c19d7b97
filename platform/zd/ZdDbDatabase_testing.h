// Test seam of the drawing database: not host API.
#pragma once

#include "zd/ZdDbObjectId.h"

namespace zd_testing {

// Accesses opened (zddbOpenObject, accessZdDbObjectForRead) and not yet closed.
long openObjectCount() noexcept;
// Object iterators made and not yet deleted.
long liveObjectIterators() noexcept;
// zddbOpenObject and accessZdDbObjectForRead of this object fail with
// eWasOpenForWrite until clearFaults.
void failOpenOf(ZdDbObjectId id);
// The next attributeIterator / newEntityIterator call gives null.
void failNextObjectIterator() noexcept;
// Forgets every fault above.
void clearDatabaseFaults();

}  // namespace zd_testing
