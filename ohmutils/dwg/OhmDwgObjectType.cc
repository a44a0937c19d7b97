// OhmDwgUtils::getOhmObjectType: the kind of a drawing object, decided by a
// fixed order of tests on what can be read off it. The order is the rule: an
// object that passes several tests gets the kind of the first.
#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "ohmutils/dwg/OhmDwgWildcardPattern_internal.h"
#include "win/CrtChar.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbText.h"

namespace {

using Type = OhmDwgUtils::EntityType;
using ohm_internal::WildcardPattern;

// A name or tag with its length, measured once for all the patterns it meets.
struct Text {
  const char16_t* units;
  std::size_t length;
};

Text measured(const char16_t* units) { return {units, std::char_traits<char16_t>::length(units)}; }

bool matches(const Text& text, const WildcardPattern& pattern) { return pattern.matches(text.units, text.length); }

// Only presence counts, so no chain is made to be released unread.
bool hasXData(const ZdDbEntity& entity, const char16_t* appName) { return entity.hasXData(appName); }

// Tag and text of one attribute of a reference. The texts are borrowed from
// the attribute, which stays as it is while the entity is classified.
struct AttributeText {
  Text tag;
  const char16_t* text;
};
using Attributes = std::span<const AttributeText>;

// Reads the attributes in drawing order into `room`, which has a place for
// each id of the reference, passing over those that a read access couldn't
// have and those without a tag; the part of `room` filled. Each attribute is
// read in place, without an open and a close: the classification only
// reads, and the database belongs to this thread for the call.
Attributes readAttributes(const ZdDbBlockReference& reference, std::span<AttributeText> room) {
  std::size_t count = 0;
  const std::unique_ptr<ZdDbObjectIterator> iterator(reference.attributeIterator());
  if (!iterator) return {};
  for (; !iterator->done() && count < room.size(); iterator->step(false, true)) {
    const auto* attribute = static_cast<const ZdDbAttribute*>(
        readableZdDbObject(iterator->objectId(), ZdDbAttribute::desc(), reference.database()));
    if (attribute && attribute->tagConst())
      room[count++] = {measured(attribute->tagConst()), attribute->textStringConst()};
  }
  return room.first(count);
}

// The text of the first attribute whose tag matches, as getAttributeValue
// gives it: one without text doesn't end the search.
const char16_t* attributeValue(Attributes attributes, const WildcardPattern& tagPattern) {
  for (const AttributeText& attribute : attributes)
    if (attribute.text && matches(attribute.tag, tagPattern)) return attribute.text;
  return nullptr;
}

bool hasAttribute(Attributes attributes, const WildcardPattern& tagPattern) {
  return attributeValue(attributes, tagPattern) != nullptr;
}

// What the tag of one attribute says, EntityUnknown when it says nothing.
Type kindOfTag(const ZdDbEntity& entity, const Text& tag) {
  static constexpr WildcardPattern kTag1{u"TAG1,TAG1F,TAG1*PART1"};
  static constexpr WildcardPattern kTag2{u"TAG2,TAG_*,TAG2F,TAG2*PART1"};
  if (matches(tag, kTag1)) return OhmDwgUtils::EntityTag1;
  // The runtime's case folding keeps lengths, so only three units can equal "TAG".
  if (tag.length == 3 && CrtEqualNoCase(tag.units, u"TAG") && hasXData(entity, u"CFD1")) return OhmDwgUtils::EntityTag1;
  if (matches(tag, kTag2)) return OhmDwgUtils::EntityTag2;
  return OhmDwgUtils::EntityUnknown;
}

// The first attribute, in drawing order, whose tag gives a kind.
Type kindOfAttributes(const ZdDbBlockReference& reference, Attributes attributes) {
  for (const AttributeText& attribute : attributes) {
    const Type kind = kindOfTag(reference, attribute.tag);
    if (kind != OhmDwgUtils::EntityUnknown) return kind;
  }
  return OhmDwgUtils::EntityUnknown;
}

Type kindOfNamePrefix(const Text& name) {
  static constexpr WildcardPattern kPlcIo{u"PLCIO*"}, kWdWn{u"WD_WN*"}, kWdWc{u"WD_WC*"}, kWdMlr{u"WD_MLR*"};
  if (matches(name, kPlcIo)) return OhmDwgUtils::EntityPlcIo;
  if (matches(name, kWdWn)) return OhmDwgUtils::EntityWdWn;
  if (matches(name, kWdWc)) return OhmDwgUtils::EntityWdWc;
  if (matches(name, kWdMlr)) return OhmDwgUtils::EntityWdMlr;
  return OhmDwgUtils::EntityUnknown;
}

Type kindOfXData(const ZdDbEntity& entity) {
  if (hasXData(entity, u"KVA_WD_FPT")) return OhmDwgUtils::EntityFPT;
  if (hasXData(entity, u"KVA_WD_NP")) return OhmDwgUtils::EntityNP;
  if (hasXData(entity, u"KVA_WD_FP")) return OhmDwgUtils::EntityFP;
  return OhmDwgUtils::EntityUnknown;
}

constexpr WildcardPattern kWireNo{u"WIRENO*"};
constexpr WildcardPattern kTagStrip{u"TAGSTRIP"};

Type kindOfNameAndAttributes(Attributes attributes, const Text& name) {
  static constexpr WildcardPattern kHaS{u"HA#S*"}, kHaD{u"HA#D*"}, kStrip{u"?T0*,?T1*,?T_*"}, kAX{u"?A?X*"};
  if (matches(name, kHaS))
    return hasAttribute(attributes, kWireNo) ? OhmDwgUtils::EntityHaSWireNo : OhmDwgUtils::EntityHaS;
  if (matches(name, kHaD))
    return hasAttribute(attributes, kWireNo) ? OhmDwgUtils::EntityHaDWireNo : OhmDwgUtils::EntityHaD;
  if (matches(name, kStrip) && hasAttribute(attributes, kTagStrip)) return OhmDwgUtils::EntityTagStrip;
  if (matches(name, kAX)) return OhmDwgUtils::EntityAX;
  return OhmDwgUtils::EntityUnknown;
}

Type kindOfAttributePresence(Attributes attributes) {
  static constexpr WildcardPattern kPTagStrip{u"P_TAGSTRIP"}, kFPT{u"FPT"}, kFP{u"FP"}, kNP{u"NP"},
      kPTag1{u"P_TAG1,P_TAG1_PART*"};
  if (hasAttribute(attributes, kPTagStrip)) return OhmDwgUtils::EntityFPT;
  if (hasAttribute(attributes, kFPT)) return OhmDwgUtils::EntityFPT;
  if (hasAttribute(attributes, kFP)) return OhmDwgUtils::EntityFP;
  if (hasAttribute(attributes, kNP)) return OhmDwgUtils::EntityNP;
  if (hasAttribute(attributes, kPTag1)) return OhmDwgUtils::EntityFP;
  return OhmDwgUtils::EntityUnknown;
}

// The tests after the block definition was found readable, in their order.
Type kindOfReference(const ZdDbBlockReference& reference, Attributes attributes, const ZdDbBlockTableRecord& block) {
  static constexpr WildcardPattern kWdType{u"WDTYPE"};
  const char16_t* wdType = attributeValue(attributes, kWdType);
  if (wdType && CrtEqualNoCase(wdType, u"1-")) {
    return hasAttribute(attributes, kTagStrip) ? OhmDwgUtils::EntityOneDashStrip : OhmDwgUtils::EntityOneDash;
  }
  // The name read in place, as getName would copy it up to its first null unit.
  const Text name = measured(block.name().c_str());
  Type kind = kindOfNamePrefix(name);
  if (kind == OhmDwgUtils::EntityUnknown) kind = kindOfXData(reference);
  if (kind == OhmDwgUtils::EntityUnknown) kind = kindOfAttributes(reference, attributes);
  if (kind == OhmDwgUtils::EntityUnknown) kind = kindOfNameAndAttributes(attributes, name);
  if (kind == OhmDwgUtils::EntityUnknown) kind = kindOfAttributePresence(attributes);
  return kind;
}

// Room for the attributes of nearly every reference, so that reading them allocates nothing.
constexpr std::size_t kAttributesInPlace = 16;

Type kindOfReference(const ZdDbBlockReference& reference, const ZdDbBlockTableRecord& block) {
  const std::size_t ids = reference.attributeIds().size();
  std::array<AttributeText, kAttributesInPlace> inPlace;
  std::vector<AttributeText> onHeap(ids > inPlace.size() ? ids : 0);
  const std::span<AttributeText> room = onHeap.empty() ? std::span<AttributeText>(inPlace) : onHeap;
  return kindOfReference(reference, readAttributes(reference, room), block);
}

}  // namespace

OhmDwgUtils::EntityType OhmDwgUtils::getOhmObjectType(const ZdDbEntity* entity) {
  if (!entity) return EntityUnknown;
  if (entity->isA() == ZdDbTable::desc()) return hasXData(*entity, u"OHM_TABLE_TYPE") ? EntityTable : EntityUnknown;
  if (entity->isA() != ZdDbBlockReference::desc()) return EntityUnknown;
  const auto& reference = static_cast<const ZdDbBlockReference&>(*entity);
  const auto* block = static_cast<const ZdDbBlockTableRecord*>(
      readableZdDbObject(reference.blockTableRecord(), ZdDbBlockTableRecord::desc(), reference.database()));
  if (!block) return EntityUnknown;
  return kindOfReference(reference, *block);
}
