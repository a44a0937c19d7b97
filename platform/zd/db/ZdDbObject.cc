#include "zd/db/ZdDbObject.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>

#include "zd/ZdCodes.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbBlockTableRecord.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbDictionary.h"
#include "zd/db/ZdDbSymbolTable.h"
#include "zd/db/ZdDbText.h"

bool ZdRxClass::isDerivedFrom(const ZdRxClass* other) const noexcept {
  for (const ZdRxClass* cls = this; cls; cls = cls->mParent)
    if (cls == other) return true;
  return false;
}

const ZdRxClass* ZdRxClass::forName(const std::u16string& name, const ZdRxClass* parent) {
  static std::mutex mutex;
  static std::map<std::u16string, std::unique_ptr<ZdRxClass>> classes;
  std::lock_guard lock(mutex);
  auto& cls = classes[name];
  if (!cls) cls = std::make_unique<ZdRxClass>(name, parent);
  return cls.get();
}

#define OHM_ZD_DESCRIPTOR(Class, Parent)                   \
  const ZdRxClass* Class::desc() {                         \
    static const ZdRxClass descriptor(u## #Class, Parent); \
    return &descriptor;                                    \
  }

OHM_ZD_DESCRIPTOR(ZdDbObject, nullptr)
OHM_ZD_DESCRIPTOR(ZdDbEntity, ZdDbObject::desc())
OHM_ZD_DESCRIPTOR(ZdDbText, ZdDbEntity::desc())
OHM_ZD_DESCRIPTOR(ZdDbAttribute, ZdDbText::desc())
OHM_ZD_DESCRIPTOR(ZdDbBlockReference, ZdDbEntity::desc())
OHM_ZD_DESCRIPTOR(ZdDbTable, ZdDbBlockReference::desc())
OHM_ZD_DESCRIPTOR(ZdDbMInsertBlock, ZdDbBlockReference::desc())
OHM_ZD_DESCRIPTOR(ZdDbSymbolTable, ZdDbObject::desc())
OHM_ZD_DESCRIPTOR(ZdDbBlockTable, ZdDbSymbolTable::desc())
OHM_ZD_DESCRIPTOR(ZdDbBlockTableRecord, ZdDbObject::desc())
OHM_ZD_DESCRIPTOR(ZdDbDictionary, ZdDbObject::desc())
OHM_ZD_DESCRIPTOR(ZdDbLayout, ZdDbObject::desc())

ZdDbObject::~ZdDbObject() = default;

Zeda::ErrorStatus ZdDbObject::erase(bool erasing) {
  if (!mWriter) return Zeda::eNotOpenForWrite;
  mErased = erasing;
  return Zeda::eOk;
}

namespace {

// A new copy of a chain; null (and nothing left) when allocation fails.
ZdValueNode* copyChain(const ZdValueNode* chain) {
  ZdValueNode* head = nullptr;
  ZdValueNode** tail = &head;
  for (; chain; chain = chain->rbnext) {
    ZdValueNode* node = zdutNewRb(chain->restype);
    if (!node) return zdutRelRb(head), nullptr;
    node->resval = chain->resval;
    const ZdValueKind kind = zdValueKindOf(chain->restype);
    if (kind == ZdValueKind::String) node->resval.rstring = zdutNewString(chain->resval.rstring);
    if (kind == ZdValueKind::Binary && chain->resval.rbinary.clen > 0) {
      node->resval.rbinary.buf = static_cast<char*>(std::malloc(static_cast<std::size_t>(chain->resval.rbinary.clen)));
      if (node->resval.rbinary.buf) {
        std::memcpy(node->resval.rbinary.buf, chain->resval.rbinary.buf,
                    static_cast<std::size_t>(chain->resval.rbinary.clen));
      } else {
        node->resval.rbinary.clen = 0;
      }
    }
    *tail = node;
    tail = &node->rbnext;
    if (kind == ZdValueKind::String && chain->resval.rstring && !node->resval.rstring) return zdutRelRb(head), nullptr;
  }
  return head;
}

// Appends a copy of `part` at `tail` and moves `tail` to its end; false when allocation fails.
bool appendCopy(ZdValueNode**& tail, const ZdValueNode* part) {
  ZdValueNode* copy = copyChain(part);
  if (!copy) return false;
  *tail = copy;
  while (*tail) tail = &(*tail)->rbnext;
  return true;
}

}  // namespace

ZdValueNode* ZdDbObject::xData(const char16_t* appName) const {
  if (!decodeXDataAsRead()) return nullptr;
  ZdValueNode* head = nullptr;
  ZdValueNode** tail = &head;
  for (const XDataPart& part : mXData) {
    if (appName && part.app != appName) continue;
    if (!appendCopy(tail, part.chain.get())) return zdutRelRb(head), nullptr;
  }
  return head;
}

bool ZdDbObject::hasXData(const char16_t* appName) const {
  if (!decodeXDataAsRead()) return false;
  if (!appName) return !mXData.empty();
  // Lengths first: most names differ in length, and their units then stay unread.
  const std::u16string_view wanted(appName);
  return std::any_of(mXData.begin(), mXData.end(), [&](const XDataPart& part) { return part.app == wanted; });
}

bool ZdDbObject::decodeXDataAsRead() const {
  if (mXDataText.empty()) return true;
  ZdValueNode* chain = mDatabase ? mDatabase->decodeXData(mXDataText) : nullptr;
  if (!chain) return false;
  // Cut the chain into one part per application, each owned by its entry.
  while (chain) {
    ZdValueNode* last = chain;
    while (last->rbnext && last->rbnext->restype != XD_APPNAME) last = last->rbnext;
    ZdValueNode* const rest = last->rbnext;
    last->rbnext = nullptr;
    const std::u16string app(chain->resval.rstring ? chain->resval.rstring : u"");
    std::erase_if(mXData, [&](const XDataPart& part) { return part.app == app; });
    mXData.push_back({app, std::shared_ptr<ZdValueNode>(chain, zdutRelRb)});
    chain = rest;
  }
  mXDataText = {};
  return true;
}

Zeda::ErrorStatus ZdDbObject::setXData(const ZdValueNode* chain) {
  if (!decodeXDataAsRead()) return Zeda::eOutOfMemory;
  while (chain) {
    if (chain->restype != XD_APPNAME || !chain->resval.rstring) return Zeda::eInvalidInput;
    const ZdValueNode* end = chain->rbnext;
    while (end && end->restype != XD_APPNAME) end = end->rbnext;
    // Copy this application's part: from `chain` up to `end`.
    ZdValueNode* head = nullptr;
    ZdValueNode** tail = &head;
    for (const ZdValueNode* node = chain; node != end; node = node->rbnext) {
      ZdValueNode single = *node;
      single.rbnext = nullptr;
      if (!appendCopy(tail, &single)) return zdutRelRb(head), Zeda::eOutOfMemory;
    }
    const std::u16string app(chain->resval.rstring);
    std::erase_if(mXData, [&](const XDataPart& part) { return part.app == app; });
    if (head->rbnext) {
      mXData.push_back({app, std::shared_ptr<ZdValueNode>(head, zdutRelRb)});
    } else {
      zdutRelRb(head);
    }
    chain = end;
  }
  return Zeda::eOk;
}
