#include "ohmutils/xref/OhmDsOccurrence.h"

#include <gtest/gtest.h>

#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "support/u16.h"

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

TEST(OhmDsOccurrence, KeysOrderAsUnsignedUnits) {
  OhmDsOccurrence occ;
  occ.mProperties[u"\uFFFF"] = u"high";
  occ.mProperties[u"a"] = u"low";
  occ.mProperties[u"ab"] = u"longer";
  std::u16string order;
  for (const auto& [key, value] : occ.mProperties) order += key + u"|";
  EXPECT_EQ(order, u"a|ab|\uFFFF|");
}

TEST(OhmDsComponentOcc, CopyIsDeep) {
  OhmDsComponentOcc source;
  source.mType = 8;
  source.mOccID.mDwgPath = u"C:\\P\\A.DWG";
  source.mOccID.mOccKey = u"K1";
  source.mXrefValueA = u"A";
  source.mPins.resize(2);
  source.mPins[1].mProperties[OhmDsKeys::TERMCODE] = u"13";

  OhmDsComponentOcc copy(source);
  source.mPins[1].mProperties[OhmDsKeys::TERMCODE] = u"14";
  source.mOccID.mOccKey = u"changed";

  EXPECT_EQ(copy.mType, 8);
  EXPECT_EQ(copy.mOccID.mDwgPath, u"C:\\P\\A.DWG");
  EXPECT_EQ(copy.mOccID.mOccKey, u"K1");
  EXPECT_EQ(copy.mXrefValueA, u"A");
  ASSERT_EQ(copy.mPins.size(), 2u);
  EXPECT_EQ(copy.mPins[1].getProperty(OhmDsKeys::TERMCODE), u"13");
}

}  // namespace
