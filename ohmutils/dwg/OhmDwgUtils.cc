#include "ohmutils/dwg/OhmDwgUtils.h"

#include "ohmutils/dwg/OhmDwgReadAccess_internal.h"
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode.h"
#include "zd/ZdWcMatch.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbText.h"

namespace {

// Releases a value chain on every path out of a scope.
struct ChainRelease {
  ZdValueNode* chain;
  ~ChainRelease() { zdutRelRb(chain); }
};

// True when the chain is application name, control string, text.
bool isOptionRecord(const ZdValueNode* chain) {
  return chain->restype == XD_APPNAME && chain->rbnext && chain->rbnext->restype == XD_CONTROL &&
         chain->rbnext->rbnext && chain->rbnext->rbnext->restype == XD_STRING;
}

// The text of the attribute if its tag fits the pattern; null otherwise.
// The access to the attribute ends before it returns.
const char16_t* matchingText(ZdDbObjectId attributeId, const char16_t* tagPattern) {
  const ohm_internal::ReadAccess access(attributeId, ZdDbAttribute::desc());
  const auto* attribute = access.get<ZdDbAttribute>();
  if (!attribute) return nullptr;
  const char16_t* tag = attribute->tagConst();
  return tag && zdutWcMatchEx(tag, tagPattern, true) ? attribute->textStringConst() : nullptr;
}

}  // namespace

OhmDwgUtils& OhmDwgUtils::operator=(const OhmDwgUtils&) { return *this; }

bool OhmDwgUtils::getOhmEntityXData(const ZdDbEntity* entity, const std::u16string& appName, std::u16string& value) {
  if (!entity) return false;
  const ChainRelease xdata{entity->xData(appName.c_str())};
  if (!xdata.chain || !isOptionRecord(xdata.chain)) return false;
  const char16_t* text = xdata.chain->rbnext->rbnext->resval.rstring;
  value = text ? text : u"";
  return true;
}

const char16_t* OhmDwgUtils::getAttributeValue(const ZdDbBlockReference* blockReference, const char16_t* tagPattern) {
  if (!blockReference || !tagPattern) return nullptr;
  ZdDbObjectIterator* iterator = blockReference->attributeIterator();
  if (!iterator) return nullptr;
  const char16_t* text = nullptr;
  for (; !iterator->done() && !text; iterator->step(false, true)) text = matchingText(iterator->objectId(), tagPattern);
  delete iterator;
  return text;
}
