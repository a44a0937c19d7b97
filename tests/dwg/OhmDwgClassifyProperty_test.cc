// The classification against its rules written out plainly, each attribute
// looked up through the public single lookup, on random block references.
// The block definition and the attributes are read in place, without opening
// them, and what a read access couldn't have must still count as absent: each
// reference has a twin with the same block and xdata whose attributes can
// also be unopenable, without a tag, erased or not attributes at all, which
// changes nothing; one open for write elsewhere counts as present and stays
// open for write.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "support/u16.h"
#include "win/CrtChar.h"
#include "zd/ZdWcMatch.h"
#include "zd/db/ZdDbDatabase_testing.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

using U = OhmDwgUtils;

struct RandomReference {
  std::u16string block;
  ZdDbDrawingBuilder::Attributes attributes;  // those that count as present
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

enum class Fault { none, cantOpen, noTag, erased, notAnAttribute, openForWrite };

ZdDbObject* OpenForWrite(ZdDbObjectId id) {
  ZdDbObject* object = nullptr;
  EXPECT_EQ(zddbOpenObject(object, id, ZdDb::kForWrite), Zeda::eOk);
  return object;
}

// Appends the attribute to `reference` with its fault; the object left open for write, if any.
ZdDbObject* AppendWithFault(ZdDbDrawingBuilder& build, ZdDbBlockReference& reference, const std::u16string& tag,
                            const std::u16string& text, Fault fault) {
  if (fault == Fault::notAnAttribute) {
    reference.appendAttributeId(build.addEntity(u"ZdDbLine")->objectId());
    return nullptr;
  }
  ZdDbAttribute* attribute = build.appendAttribute(reference, tag, text);
  if (fault == Fault::cantOpen) zd_testing::failOpenOf(attribute->objectId());
  if (fault == Fault::noTag) attribute->setTag(std::nullopt);
  if (fault == Fault::erased) {
    OpenForWrite(attribute->objectId())->erase();
    attribute->close();
  }
  return fault == Fault::openForWrite ? OpenForWrite(attribute->objectId()) : nullptr;
}

TEST(OhmDwgClassification, AgreesWithThePlainRulesOnRandomReferencesAndUnreadableAttributesCountAsAbsent) {
  std::mt19937 rng(6011);
  const std::u16string blocks[] = {u"X",     u"HA1S2", u"HA2D", u"PLCIO1", u"WD_WN", u"WD_MLR2",
                                   u"WD_WC", u"HT0X",  u"CAMX", u"hT1",    u"ha9s",  u"AT_2"};
  const std::u16string tags[] = {u"TAG1",         u"TAG",           u"tag2",       u"TAG2",  u"TAG_A", u"WDTYPE",
                                 u"TAGSTRIP",     u"WIRENO3",       u"FP",         u"FPT",   u"NP",    u"P_TAG1",
                                 u"P_TAGSTRIP",   u"DESC1",         u"TAG1XPART1", u"TAG1F", u"TAG2F", u"TAG2XPART1",
                                 u"p_tag1_part2", u"tag\u017Ftrip", u"\u0131"};
  const std::u16string texts[] = {u"1-", u"", u"K1", u"1-x"};
  const std::u16string apps[] = {u"KVA_WD_FPT", u"KVA_WD_NP", u"KVA_WD_FP", u"CFD1"};
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  for (int round = 0; round < 3000; ++round) {
    RandomReference r{blocks[rng() % std::size(blocks)], {}, {}};
    ZdDbBlockReference* faulty = build.insertBlock(r.block);
    std::vector<ZdDbObject*> heldForWrite;
    for (std::size_t n = rng() % 6; n > 0; --n) {
      const std::u16string &tag = tags[rng() % std::size(tags)], &text = texts[rng() % std::size(texts)];
      const Fault fault = rng() % 2 ? Fault::none : static_cast<Fault>(rng() % 6);
      if (ZdDbObject* held = AppendWithFault(build, *faulty, tag, text, fault)) heldForWrite.push_back(held);
      if (fault == Fault::none || fault == Fault::openForWrite) r.attributes.push_back({tag, text});
    }
    ZdDbBlockReference* clean = build.insertBlock(r.block, r.attributes);
    for (const std::u16string& app : apps)
      if (rng() % 6 == 0) r.xdataApps.push_back(app);
    for (const std::u16string& app : r.xdataApps) {
      ZdDbDrawingBuilder::setOptionXData(*faulty, app, u"1");
      ZdDbDrawingBuilder::setOptionXData(*clean, app, u"1");
    }
    const long openBefore = zd_testing::openObjectCount();
    const std::string trace = "round " + std::to_string(round) + ", block " + U8(r.block) + ", " +
                              std::to_string(r.attributes.size()) + " attributes present";
    ASSERT_EQ(U::getOhmObjectType(clean), PlainKind(clean, r)) << trace;
    ASSERT_EQ(U::getOhmObjectType(faulty), U::getOhmObjectType(clean)) << trace;
    EXPECT_EQ(zd_testing::openObjectCount(), openBefore);
    for (ZdDbObject* held : heldForWrite) {
      EXPECT_TRUE(held->isWriteEnabled());
      held->close();
    }
    zd_testing::clearDatabaseFaults();
  }
}

}  // namespace
