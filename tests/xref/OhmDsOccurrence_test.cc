#include "ohmutils/xref/OhmDsOccurrence.h"

#include <gtest/gtest.h>

#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"

namespace {

// Lookups by exact key are checked on random maps; the empty key and the
// second map are not among their keys.
TEST(OhmDsOccurrence, GetPropertyReadsOnlyItsOwnMapAndNeverTheEmptyKey) {
  OhmDsComponentOcc occ;
  occ.mProperties[u""] = u"stored under the empty key";
  occ.mProperties[OhmDsKeys::REF] = u"105";
  occ.mSheetProperties[OhmDsKeys::CONTACT] = u"NC";  // the other map is never looked at
  EXPECT_EQ(occ.getProperty(u""), u"");
  EXPECT_EQ(occ.getProperty(OhmDsKeys::CONTACT), u"");
  EXPECT_EQ(occ.getProperty(OhmDsKeys::REF), u"105");
}

}  // namespace
