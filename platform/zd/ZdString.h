// ZdString: the host application's string class, as far as the library uses
// it. A value type of UTF-16 units; lengths count units. Construction from a
// terminated pointer reads up to the terminator, so text that passes through a
// ZdString ends at its first U+0000, as it does in the host.
//
// Thread safety: a plain value; one object belongs to one thread at a time.
#pragma once

#include <string>
#include <string_view>

#include "OhmPlatformExport.h"
#include "zd/db/ZdDbObjectId.h"

OHM_PLATFORM_API_BEGIN

class ZdString {
 public:
  ZdString() = default;
  ZdString(const char16_t* text);  // null gives the empty string
  ZdString(char16_t unit);
  explicit ZdString(std::u16string_view text) : m_str(text) {}
  // The handle's hexadecimal digits, upper case, without leading zeros ("0" for null).
  explicit ZdString(ZdDbHandle handle);

  // Pointer to the terminated units; valid until the string changes.
  const char16_t* kwszPtr() const noexcept { return m_str.c_str(); }
  const char16_t* constPtr() const noexcept { return m_str.c_str(); }
  operator const char16_t*() const noexcept { return m_str.c_str(); }
  const std::u16string& str() const noexcept { return m_str; }

  unsigned length() const noexcept { return static_cast<unsigned>(m_str.size()); }
  bool isEmpty() const noexcept { return m_str.empty(); }
  ZdString& setEmpty() noexcept;

  ZdString& assign(const ZdString& other);
  ZdString& assign(const char16_t* text);
  ZdString& append(const ZdString& other);
  ZdString& append(char16_t unit);
  // A new string: this one followed by `other`.
  ZdString concat(const ZdString& other) const;

  // <0, 0 or >0, unit by unit.
  int compare(const ZdString& other) const noexcept;
  // <0, 0 or >0 after Unicode simple case folding of both sides.
  int compareNoCase(const ZdString& other) const noexcept;

  // Position of the first `unit` or `text` at or after `start`, or -1.
  int find(char16_t unit, int start = 0) const noexcept;
  int find(const ZdString& text, int start = 0) const noexcept;
  // Position of the last `unit`, or -1.
  int findRev(char16_t unit) const noexcept;
  // Up to `count` units from `start` (-1: to the end); clamped to the string.
  ZdString substr(int start, int count = -1) const;

  ZdString& operator+=(const ZdString& other) { return append(other); }
  ZdString& operator+=(char16_t unit) { return append(unit); }
  friend bool operator==(const ZdString& a, const ZdString& b) noexcept { return a.m_str == b.m_str; }
  friend ZdString operator+(const ZdString& a, const ZdString& b) { return a.concat(b); }

 private:
  std::u16string m_str;
};

OHM_PLATFORM_API_END
