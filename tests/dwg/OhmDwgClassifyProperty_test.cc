// The classification against its rules written out plainly, each attribute
// looked up through the public single lookup, on random block references.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "support/u16.h"
#include "win/CrtChar.h"
#include "zd/ZdWcMatch.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

using U = OhmDwgUtils;

struct RandomReference {
  std::u16string block;
  ZdDbDrawingBuilder::Attributes attributes;
  std::vector<std::u16string> xdataApps;
};

bool Has(const std::vector<std::u16string>& apps, const std::u16string& app) {
  return std::find(apps.begin(), apps.end(), app) != apps.end();
}

// The order of tests, as the rule states it; the first that hits decides.
U::EntityType PlainKind(const ZdDbBlockReference* ref, const RandomReference& r) {
  auto value = [&](const char16_t* pattern) { return U::getAttributeValue(ref, pattern); };
  auto name = [&](const char16_t* pattern) { return zdutWcMatchEx(r.block.c_str(), pattern, true); };
  const char16_t* wdType = value(u"WDTYPE");
  if (wdType && CrtEqualNoCase(wdType, u"1-")) return value(u"TAGSTRIP") ? U::EntityOneDashStrip : U::EntityOneDash;
  if (name(u"PLCIO*")) return U::EntityPlcIo;
  if (name(u"WD_WN*")) return U::EntityWdWn;
  if (name(u"WD_WC*")) return U::EntityWdWc;
  if (name(u"WD_MLR*")) return U::EntityWdMlr;
  if (Has(r.xdataApps, u"KVA_WD_FPT")) return U::EntityFPT;
  if (Has(r.xdataApps, u"KVA_WD_NP")) return U::EntityNP;
  if (Has(r.xdataApps, u"KVA_WD_FP")) return U::EntityFP;
  for (const auto& [tag, text] : r.attributes) {
    if (zdutWcMatchEx(tag.c_str(), u"TAG1,TAG1F,TAG1*PART1", true)) return U::EntityTag1;
    if (CrtEqualNoCase(tag, u"TAG") && Has(r.xdataApps, u"CFD1")) return U::EntityTag1;
    if (zdutWcMatchEx(tag.c_str(), u"TAG2,TAG_*,TAG2F,TAG2*PART1", true)) return U::EntityTag2;
  }
  if (name(u"HA#S*")) return value(u"WIRENO*") ? U::EntityHaSWireNo : U::EntityHaS;
  if (name(u"HA#D*")) return value(u"WIRENO*") ? U::EntityHaDWireNo : U::EntityHaD;
  if (name(u"?T0*,?T1*,?T_*") && value(u"TAGSTRIP")) return U::EntityTagStrip;
  if (name(u"?A?X*")) return U::EntityAX;
  if (value(u"P_TAGSTRIP") || value(u"FPT")) return U::EntityFPT;
  if (value(u"FP")) return U::EntityFP;
  if (value(u"NP")) return U::EntityNP;
  if (value(u"P_TAG1,P_TAG1_PART*")) return U::EntityFP;
  return U::EntityUnknown;
}

TEST(OhmDwgClassification, AgreesWithThePlainRulesOnRandomReferences) {
  std::mt19937 rng(6011);
  const std::u16string blocks[] = {u"X",     u"HA1S2", u"HA2D", u"PLCIO1", u"WD_WN", u"WD_MLR2",
                                   u"WD_WC", u"HT0X",  u"CAMX", u"hT1",    u"ha9s",  u"AT_2"};
  const std::u16string tags[] = {u"TAG1",    u"TAG",        u"tag2",  u"TAG_A", u"WDTYPE",     u"TAGSTRIP",
                                 u"WIRENO3", u"FP",         u"FPT",   u"NP",    u"P_TAG1",     u"P_TAGSTRIP",
                                 u"DESC1",   u"TAG1XPART1", u"TAG1F", u"TAG2F", u"TAG2XPART1", u"p_tag1_part2"};
  const std::u16string texts[] = {u"1-", u"", u"K1", u"1-x"};
  const std::u16string apps[] = {u"KVA_WD_FPT", u"KVA_WD_NP", u"KVA_WD_FP", u"CFD1"};
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  for (int round = 0; round < 3000; ++round) {
    RandomReference r;
    r.block = blocks[rng() % std::size(blocks)];
    for (std::size_t n = rng() % 4; n > 0; --n)
      r.attributes.push_back({tags[rng() % std::size(tags)], texts[rng() % std::size(texts)]});
    for (const std::u16string& app : apps)
      if (rng() % 6 == 0) r.xdataApps.push_back(app);
    ZdDbBlockReference* reference = build.insertBlock(r.block, r.attributes);
    for (const std::u16string& app : r.xdataApps) ZdDbDrawingBuilder::setOptionXData(*reference, app, u"1");
    ASSERT_EQ(U::getOhmObjectType(reference), PlainKind(reference, r))
        << "block " << U8(r.block) << ", " << r.attributes.size() << " attributes, " << r.xdataApps.size() << " apps";
  }
}

}  // namespace
