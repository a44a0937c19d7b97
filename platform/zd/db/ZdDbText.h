// ZdDbText: a single-line text entity; ZdDbAttribute: the text of one
// attribute of a block reference, with its tag. Both are owned by the
// database; the pointers they give are borrowed and valid until the text
// changes or the drawing goes.
#pragma once

#include <optional>
#include <string>

#include "OhmPlatformExport.h"
#include "zd/db/ZdDbObject.h"

OHM_PLATFORM_API_BEGIN

class ZdDbText : public ZdDbEntity {
 public:
  static const ZdRxClass* desc();
  ZdDbText() : ZdDbEntity(desc()) {}
  // The text, borrowed; never null.
  const char16_t* textStringConst() const noexcept { return mText.c_str(); }
  void setTextString(std::u16string text) { mText = std::move(text); }

 protected:
  explicit ZdDbText(const ZdRxClass* cls) : ZdDbEntity(cls) {}

 private:
  std::u16string mText;
};

class ZdDbAttribute : public ZdDbText {
 public:
  static const ZdRxClass* desc();
  ZdDbAttribute() : ZdDbText(desc()) {}
  // The tag, borrowed; null for an attribute without one.
  const char16_t* tagConst() const noexcept { return mTag ? mTag->c_str() : nullptr; }
  // Sets the tag; nullopt makes an attribute without one.
  void setTag(std::optional<std::u16string> tag) { mTag = std::move(tag); }

 private:
  std::optional<std::u16string> mTag = std::u16string();
};

OHM_PLATFORM_API_END
