#include "ohmutils/xref/OhmDsOccurrence.h"

#include <gtest/gtest.h>

#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"

namespace {

TEST(OhmDsOccurrence, GetPropertyReadsOnlyItsOwnMapAndExactKeys) {
  OhmDsComponentOcc occ;
  occ.mProperties[u""] = u"stored under the empty key";
  occ.mProperties[u"contact"] = u"NO";  // keys are case-sensitive
  occ.mProperties[OhmDsKeys::REF] = u"105";
  occ.mSheetProperties[OhmDsKeys::CONTACT] = u"NC";  // the other map is never looked at

  EXPECT_EQ(occ.getProperty(u""), u"");
  EXPECT_EQ(occ.getProperty(OhmDsKeys::CONTACT), u"");
  EXPECT_EQ(occ.getProperty(OhmDsKeys::REF), u"105");
  EXPECT_EQ(occ.getProperty(u"MISSING"), u"");
  // Absent keys all refer to one shared empty string.
  EXPECT_EQ(&occ.getProperty(u"MISSING"), &occ.getProperty(OhmDsKeys::SHEET));
}

}  // namespace
