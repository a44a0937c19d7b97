// ZdDbDictionary: named entries that point at objects of the same database,
// in the order they were set; names compare without regard to case. The
// layout dictionary (ZdDbDatabase::getLayoutDictionary) holds the drawing's
// layouts. ZdDbDictionaryIterator walks the entries: a new object, owned and
// deleted by the caller, counted by the host while it lives.
//
// ZdDbLayout: a tab of the drawing, "Model" for model space and one per paper
// space layout, with its place among the tabs and its block record.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "OhmPlatformExport.h"
#include "zd/ZdString.h"
#include "zd/db/ZdDbObject.h"

OHM_PLATFORM_API_BEGIN

class ZdDbDictionaryIterator {
 public:
  virtual ~ZdDbDictionaryIterator();
  ZdDbDictionaryIterator(const ZdDbDictionaryIterator&) = delete;
  ZdDbDictionaryIterator& operator=(const ZdDbDictionaryIterator&) = delete;
  bool done() const noexcept { return mPosition >= mEntries.size(); }
  // Moves to the next entry; false when that passes the end.
  bool next() noexcept;
  // The current entry's name and object id; empty and null when done.
  const char16_t* name() const noexcept;
  ZdDbObjectId objectId() const noexcept;

 private:
  friend class ZdDbDictionary;
  using Entry = std::pair<std::u16string, ZdDbObjectId>;
  explicit ZdDbDictionaryIterator(std::vector<Entry> entries);
  std::vector<Entry> mEntries;
  std::size_t mPosition = 0;
};

class ZdDbDictionary : public ZdDbObject {
 public:
  static const ZdRxClass* desc();
  ZdDbDictionary() : ZdDbObject(desc()) {}
  // Sets the entry of that name (replacing one that stands) to `id`.
  void setAt(const std::u16string& name, ZdDbObjectId id);
  // The id of the entry of that name: eOk, or eKeyNotFound with a null id.
  Zeda::ErrorStatus getAt(const char16_t* name, ZdDbObjectId& id) const;
  // Removes the entry of that name; eKeyNotFound when there is none.
  Zeda::ErrorStatus remove(const char16_t* name);
  std::size_t numEntries() const noexcept { return mEntries.size(); }
  // A new iterator from the first entry; null when the host can't make one.
  ZdDbDictionaryIterator* newIterator() const;

 private:
  std::vector<std::pair<std::u16string, ZdDbObjectId>> mEntries;
};

class ZdDbLayout : public ZdDbObject {
 public:
  static const ZdRxClass* desc();
  ZdDbLayout() : ZdDbObject(desc()) {}
  Zeda::ErrorStatus getLayoutName(ZdString& name) const;
  const std::u16string& layoutName() const noexcept { return mName; }
  void setLayoutName(std::u16string name) { mName = std::move(name); }
  // The layout's place among the tabs; Model is 0.
  std::int32_t getTabOrder() const noexcept { return mTabOrder; }
  void setTabOrder(std::int32_t tabOrder) noexcept { mTabOrder = tabOrder; }
  // The block record that holds the layout's entities.
  ZdDbObjectId getBlockTableRecordId() const noexcept { return mBlock; }
  void setBlockTableRecordId(ZdDbObjectId block) noexcept { mBlock = block; }

 private:
  std::u16string mName;
  std::int32_t mTabOrder = 0;
  ZdDbObjectId mBlock;
};

OHM_PLATFORM_API_END
