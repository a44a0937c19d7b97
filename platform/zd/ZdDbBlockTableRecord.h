// ZdDbBlockTableRecord: a block definition (or model or paper space) with its
// entities in drawing order. Owned by its database; it keeps the ids of the
// entities it owns.
#pragma once

#include <string>
#include <vector>

#include "zd/ZdDbBlockReference.h"
#include "zd/ZdDbObject.h"
#include "zd/ZdString.h"

class ZdDbBlockTableRecord : public ZdDbObject {
 public:
  static const ZdRxClass* desc();
  explicit ZdDbBlockTableRecord(std::u16string name) : ZdDbObject(desc()), mName(std::move(name)) {}
  // The block's name; eOk.
  Zeda::ErrorStatus getName(ZdString& name) const;
  const std::u16string& name() const noexcept { return mName; }
  // A new iterator over the entities, owned by the caller; null when the host can't make one.
  ZdDbObjectIterator* newEntityIterator(bool atBeginning = true, bool skipErased = true) const;
  void appendEntityId(ZdDbObjectId entity) { mEntities.push_back(entity); }
  const std::vector<ZdDbObjectId>& entityIds() const noexcept { return mEntities; }

 private:
  std::u16string mName;
  std::vector<ZdDbObjectId> mEntities;
};
