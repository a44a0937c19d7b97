// Classification reads the block definition and the attributes in place,
// without opening them; what a read access couldn't have must still count as
// absent. On random references, attributes that can't be opened, have no
// tag, are erased or aren't attributes change nothing against the same
// reference built without them, and one open for write elsewhere counts as
// present and stays open for write.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "support/u16.h"
#include "zd/db/ZdDbDatabase_testing.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

enum class Fault { none, cantOpen, noTag, erased, notAnAttribute, openForWrite };

struct RandomAttribute {
  std::u16string tag;
  std::u16string text;
  Fault fault;
};

bool CountsAsPresent(const RandomAttribute& attribute) {
  return attribute.fault == Fault::none || attribute.fault == Fault::openForWrite;
}

ZdDbObject* OpenForWrite(ZdDbObjectId id) {
  ZdDbObject* object = nullptr;
  EXPECT_EQ(zddbOpenObject(object, id, ZdDb::kForWrite), Zeda::eOk);
  return object;
}

// Appends the attribute to `reference` with its fault; the object left open for write, if any.
ZdDbObject* AppendWithFault(ZdDbDrawingBuilder& build, ZdDbBlockReference& reference, const RandomAttribute& a) {
  if (a.fault == Fault::notAnAttribute) {
    reference.appendAttributeId(build.addEntity(u"ZdDbLine")->objectId());
    return nullptr;
  }
  ZdDbAttribute* attribute = build.appendAttribute(reference, a.tag, a.text);
  if (a.fault == Fault::cantOpen) zd_testing::failOpenOf(attribute->objectId());
  if (a.fault == Fault::noTag) attribute->setTag(std::nullopt);
  if (a.fault == Fault::erased) {
    OpenForWrite(attribute->objectId())->erase();
    attribute->close();
  }
  return a.fault == Fault::openForWrite ? OpenForWrite(attribute->objectId()) : nullptr;
}

TEST(OhmDwgClassifyFaults, UnreadableAttributesCountAsAbsent) {
  std::mt19937 rng(1818);
  const std::u16string blocks[] = {u"X", u"HA1S2", u"HA2D", u"PLCIO1", u"WD_WN", u"HT0X", u"CAMX"};
  const std::u16string tags[] = {u"TAG1", u"TAG", u"TAG2",   u"WDTYPE",        u"TAGSTRIP", u"WIRENO3", u"FP",
                                 u"FPT",  u"NP",  u"P_TAG1", u"tag\u017Ftrip", u"\u0131",   u"DESC1"};
  const std::u16string texts[] = {u"1-", u"", u"K1"};
  const std::u16string apps[] = {u"KVA_WD_FP", u"CFD1"};
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  for (int round = 0; round < 2000; ++round) {
    const std::u16string& block = blocks[rng() % std::size(blocks)];
    std::vector<RandomAttribute> attributes(rng() % 5);
    for (RandomAttribute& a : attributes)
      a = {tags[rng() % std::size(tags)], texts[rng() % std::size(texts)], static_cast<Fault>(rng() % 6)};
    ZdDbBlockReference* faulty = build.insertBlock(block);
    ZdDbDrawingBuilder::Attributes present;
    std::vector<ZdDbObject*> heldForWrite;
    for (const RandomAttribute& a : attributes) {
      if (ZdDbObject* held = AppendWithFault(build, *faulty, a)) heldForWrite.push_back(held);
      if (CountsAsPresent(a)) present.push_back({a.tag, a.text});
    }
    ZdDbBlockReference* clean = build.insertBlock(block, present);
    for (const std::u16string& app : apps) {
      if (rng() % 4 != 0) continue;
      ZdDbDrawingBuilder::setOptionXData(*faulty, app, u"1");
      ZdDbDrawingBuilder::setOptionXData(*clean, app, u"1");
    }
    const long openBefore = zd_testing::openObjectCount();
    ASSERT_EQ(OhmDwgUtils::getOhmObjectType(faulty), OhmDwgUtils::getOhmObjectType(clean))
        << "round " << round << ", block " << U8(block) << ", " << attributes.size() << " attributes";
    EXPECT_EQ(zd_testing::openObjectCount(), openBefore);
    for (ZdDbObject* held : heldForWrite) {
      EXPECT_TRUE(held->isWriteEnabled());
      held->close();
    }
    zd_testing::clearDatabaseFaults();
  }
}

}  // namespace
