// Test seam of the drawing database: not host API.
#pragma once

#include "OhmPlatformExport.h"
#include "zd/db/ZdDbObjectId.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// Accesses opened (zddbOpenObject, accessZdDbObjectForRead) and not yet closed.
long openObjectCount() noexcept;
// Iterators (attribute, block record entity, dictionary) made and not yet deleted.
long liveObjectIterators() noexcept;
// zddbOpenObject and accessZdDbObjectForRead of this object fail with
// eWasOpenForWrite until clearFaults.
void failOpenOf(ZdDbObjectId id);
// The next iterator made (attributeIterator, ZdDbBlockTableRecord::newIterator,
// ZdDbDictionary::newIterator) fails: null, or eOutOfMemory.
void failNextObjectIterator() noexcept;
// The next `count` iterators made fail likewise.
void failNextObjectIterators(int count) noexcept;
// Forgets every fault above.
void clearDatabaseFaults();

}  // namespace zd_testing

OHM_PLATFORM_API_END
