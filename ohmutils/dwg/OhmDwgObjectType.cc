// OhmDwgUtils::getOhmObjectType: the kind of a drawing object, decided by a
// fixed order of tests on what can be read off it. The order is the rule: an
// object that passes several tests gets the kind of the first.
#include <memory>
#include <vector>

#include "ohmutils/dwg/OhmDwgReadAccess_internal.h"
#include "ohmutils/dwg/OhmDwgUtils.h"
#include "win/CrtChar.h"
#include "zd/ZdWcMatch.h"
#include "zd/db/ZdDbText.h"

namespace {

using Type = OhmDwgUtils::EntityType;

bool hasXData(const ZdDbEntity& entity, const char16_t* appName) {
  ZdValueNode* chain = entity.xData(appName);
  zdutRelRb(chain);
  return chain != nullptr;
}

bool matches(const ZdString& name, const char16_t* pattern) { return zdutWcMatchEx(name.kwszPtr(), pattern, true); }

// Tag and text of each attribute of a reference, in drawing order, read in
// one pass that opens each attribute once. The texts are borrowed from the
// attributes, which stay as they are while the entity is classified.
struct AttributeText {
  const char16_t* tag;
  const char16_t* text;
};
using Attributes = std::vector<AttributeText>;

// Attributes that can't be opened or have no tag are passed over.
Attributes attributesOf(const ZdDbBlockReference& reference) {
  Attributes attributes;
  const std::unique_ptr<ZdDbObjectIterator> iterator(reference.attributeIterator());
  if (!iterator) return attributes;
  for (; !iterator->done(); iterator->step(false, true)) {
    const ohm_internal::ReadAccess access(iterator->objectId(), ZdDbAttribute::desc());
    const auto* attribute = access.get<ZdDbAttribute>();
    if (attribute && attribute->tagConst()) attributes.push_back({attribute->tagConst(), attribute->textStringConst()});
  }
  return attributes;
}

// The text of the first attribute whose tag matches, as getAttributeValue
// gives it: one without text doesn't end the search.
const char16_t* attributeValue(const Attributes& attributes, const char16_t* tagPattern) {
  for (const AttributeText& attribute : attributes)
    if (attribute.text && zdutWcMatchEx(attribute.tag, tagPattern, true)) return attribute.text;
  return nullptr;
}

bool hasAttribute(const Attributes& attributes, const char16_t* tagPattern) {
  return attributeValue(attributes, tagPattern) != nullptr;
}

// What the tag of one attribute says, EntityUnknown when it says nothing.
Type kindOfTag(const ZdDbEntity& entity, const char16_t* tag) {
  if (zdutWcMatchEx(tag, u"TAG1,TAG1F,TAG1*PART1", true)) return OhmDwgUtils::EntityTag1;
  if (CrtEqualNoCase(tag, u"TAG") && hasXData(entity, u"CFD1")) return OhmDwgUtils::EntityTag1;
  if (zdutWcMatchEx(tag, u"TAG2,TAG_*,TAG2F,TAG2*PART1", true)) return OhmDwgUtils::EntityTag2;
  return OhmDwgUtils::EntityUnknown;
}

// The first attribute, in drawing order, whose tag gives a kind.
Type kindOfAttributes(const ZdDbBlockReference& reference, const Attributes& attributes) {
  for (const AttributeText& attribute : attributes) {
    const Type kind = kindOfTag(reference, attribute.tag);
    if (kind != OhmDwgUtils::EntityUnknown) return kind;
  }
  return OhmDwgUtils::EntityUnknown;
}

Type kindOfNamePrefix(const ZdString& name) {
  if (matches(name, u"PLCIO*")) return OhmDwgUtils::EntityPlcIo;
  if (matches(name, u"WD_WN*")) return OhmDwgUtils::EntityWdWn;
  if (matches(name, u"WD_WC*")) return OhmDwgUtils::EntityWdWc;
  if (matches(name, u"WD_MLR*")) return OhmDwgUtils::EntityWdMlr;
  return OhmDwgUtils::EntityUnknown;
}

Type kindOfXData(const ZdDbEntity& entity) {
  if (hasXData(entity, u"KVA_WD_FPT")) return OhmDwgUtils::EntityFPT;
  if (hasXData(entity, u"KVA_WD_NP")) return OhmDwgUtils::EntityNP;
  if (hasXData(entity, u"KVA_WD_FP")) return OhmDwgUtils::EntityFP;
  return OhmDwgUtils::EntityUnknown;
}

Type kindOfNameAndAttributes(const Attributes& attributes, const ZdString& name) {
  if (matches(name, u"HA#S*")) {
    return hasAttribute(attributes, u"WIRENO*") ? OhmDwgUtils::EntityHaSWireNo : OhmDwgUtils::EntityHaS;
  }
  if (matches(name, u"HA#D*")) {
    return hasAttribute(attributes, u"WIRENO*") ? OhmDwgUtils::EntityHaDWireNo : OhmDwgUtils::EntityHaD;
  }
  if (matches(name, u"?T0*,?T1*,?T_*") && hasAttribute(attributes, u"TAGSTRIP")) return OhmDwgUtils::EntityTagStrip;
  if (matches(name, u"?A?X*")) return OhmDwgUtils::EntityAX;
  return OhmDwgUtils::EntityUnknown;
}

Type kindOfAttributePresence(const Attributes& attributes) {
  if (hasAttribute(attributes, u"P_TAGSTRIP")) return OhmDwgUtils::EntityFPT;
  if (hasAttribute(attributes, u"FPT")) return OhmDwgUtils::EntityFPT;
  if (hasAttribute(attributes, u"FP")) return OhmDwgUtils::EntityFP;
  if (hasAttribute(attributes, u"NP")) return OhmDwgUtils::EntityNP;
  if (hasAttribute(attributes, u"P_TAG1,P_TAG1_PART*")) return OhmDwgUtils::EntityFP;
  return OhmDwgUtils::EntityUnknown;
}

// The tests after the block definition was opened, in their order.
Type kindOfReference(const ZdDbBlockReference& reference, const ZdDbBlockTableRecord& block) {
  const Attributes attributes = attributesOf(reference);
  const char16_t* wdType = attributeValue(attributes, u"WDTYPE");
  if (wdType && CrtEqualNoCase(wdType, u"1-")) {
    return hasAttribute(attributes, u"TAGSTRIP") ? OhmDwgUtils::EntityOneDashStrip : OhmDwgUtils::EntityOneDash;
  }
  ZdString name;
  block.getName(name);  // a name that can't be read stays empty and matches nothing
  Type kind = kindOfNamePrefix(name);
  if (kind == OhmDwgUtils::EntityUnknown) kind = kindOfXData(reference);
  if (kind == OhmDwgUtils::EntityUnknown) kind = kindOfAttributes(reference, attributes);
  if (kind == OhmDwgUtils::EntityUnknown) kind = kindOfNameAndAttributes(attributes, name);
  if (kind == OhmDwgUtils::EntityUnknown) kind = kindOfAttributePresence(attributes);
  return kind;
}

}  // namespace

OhmDwgUtils::EntityType OhmDwgUtils::getOhmObjectType(const ZdDbEntity* entity) {
  if (!entity) return EntityUnknown;
  if (entity->isA() == ZdDbTable::desc()) return hasXData(*entity, u"OHM_TABLE_TYPE") ? EntityTable : EntityUnknown;
  if (entity->isA() != ZdDbBlockReference::desc()) return EntityUnknown;
  const auto& reference = static_cast<const ZdDbBlockReference&>(*entity);
  const ohm_internal::ReadAccess block(reference.blockTableRecord(), ZdDbBlockTableRecord::desc());
  if (!block) return EntityUnknown;
  return kindOfReference(reference, *block.get<ZdDbBlockTableRecord>());
}
