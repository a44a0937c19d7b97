// CString: MFC's wide string, as the library uses it. A value type over a
// std::u16string; positions and lengths count 16-bit units and are `int`, as
// in MFC. The search operations stop at an embedded terminator, like the C
// runtime functions MFC builds them on, so a string holding U+0000 behaves as
// the platform's does.
//
// Out-of-range indices: Left/Mid/Delete/Insert clamp, as MFC does.
// GetAt/operator[] REQUIRE 0 <= index < GetLength() (MFC throws an ATL
// exception there; this build asserts, since no caller relies on the throw).
//
// Thread safety: a CString is a plain value; distinct objects may be used on
// distinct threads, one object by one thread at a time.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

class CString {
 public:
  CString() = default;
  CString(LPCWSTR text);  // null gives the empty string
  CString(LPCWSTR text, int length);
  CString(char16_t unit, int repeat = 1);
  CString(std::u16string_view text) : m_str(text) {}
  CString(std::u16string text) : m_str(std::move(text)) {}

  // --- size and units -----------------------------------------------------
  int GetLength() const noexcept { return static_cast<int>(m_str.size()); }
  bool IsEmpty() const noexcept { return m_str.empty(); }
  void Empty() noexcept { m_str.clear(); }
  char16_t GetAt(int index) const;
  char16_t operator[](int index) const { return GetAt(index); }
  LPCWSTR GetString() const noexcept { return m_str.c_str(); }
  operator LPCWSTR() const noexcept { return m_str.c_str(); }
  // The value as a standard string (this build's bridge to std code).
  const std::u16string& str() const noexcept { return m_str; }

  // --- assignment and joining ---------------------------------------------
  void SetString(LPCWSTR text);  // null empties
  void SetString(LPCWSTR text, int length);
  void Append(LPCWSTR text);  // null appends nothing
  void Append(const CString& text) { m_str += text.m_str; }
  void AppendChar(char16_t unit) { m_str += unit; }
  CString& operator=(LPCWSTR text);
  CString& operator=(char16_t unit);
  CString& operator+=(const CString& text);
  CString& operator+=(LPCWSTR text);
  CString& operator+=(char16_t unit);
  // printf-style: %s and %c take wide text and units, %hs narrow text; the
  // integer, floating and pointer conversions are those of the C runtime.
  void Format(LPCWSTR format, ...);
  void FormatV(LPCWSTR format, va_list args);

  // --- pieces ---------------------------------------------------------------
  CString Left(int count) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;

  // --- searching: position or -1 -------------------------------------------
  int Find(char16_t unit, int start = 0) const noexcept;  // -1 if start is outside [0, length)
  int Find(LPCWSTR sub, int start = 0) const noexcept;    // -1 if start is outside [0, length]; "" is found at start
  int ReverseFind(char16_t unit) const noexcept;
  int FindOneOf(LPCWSTR charSet) const noexcept;  // "" finds nothing

  // --- editing in place: counts and new lengths -----------------------------
  int Replace(LPCWSTR oldText, LPCWSTR newText);  // occurrences replaced; "" or null old text replaces nothing
  int Replace(char16_t oldUnit, char16_t newUnit);
  int Insert(int index, char16_t unit);  // new length
  int Insert(int index, LPCWSTR text);
  int Delete(int index, int count = 1);  // new length
  CString& MakeUpper();                  // a-z only, the C runtime's default locale
  CString& Trim();                       // white space of the Unicode White_Space property
  CString& TrimLeft();
  CString& TrimRight();
  CString& TrimRight(char16_t unit);
  CString& TrimRight(LPCWSTR units);

  // --- comparing: <0, 0, >0 -------------------------------------------------
  int Compare(LPCWSTR other) const noexcept;        // unit by unit
  int CompareNoCase(LPCWSTR other) const noexcept;  // unit by unit after A-Z -> a-z
  // Collation without case in the "C" locale, which the host keeps: the order
  // of CompareNoCase.
  int CollateNoCase(LPCWSTR other) const noexcept { return CompareNoCase(other); }

  // --- resources ------------------------------------------------------------
  // Becomes string `id` of `module`; FALSE and unchanged when it isn't there
  // (or is empty).
  BOOL LoadString(HINSTANCE module, UINT id);
  // Becomes string `id` of the first module of MFC's resource chain that has
  // it; FALSE and unchanged when none has.
  BOOL LoadString(UINT id);

  // --- raw buffer -------------------------------------------------------------
  // The buffer holds at least minLength units plus a terminator; write into it,
  // then call ReleaseBuffer (-1: up to the first terminator).
  LPWSTR GetBuffer(int minLength = 0);
  void ReleaseBuffer(int newLength = -1);

  friend bool operator==(const CString& a, const CString& b) noexcept { return a.m_str == b.m_str; }
  friend bool operator==(const CString& a, LPCWSTR b) noexcept { return a.Compare(b) == 0; }
  friend bool operator<(const CString& a, const CString& b) noexcept { return a.m_str < b.m_str; }

 private:
  std::u16string m_str;
};

CString operator+(const CString& a, const CString& b);
CString operator+(const CString& a, LPCWSTR b);
CString operator+(LPCWSTR a, const CString& b);
CString operator+(const CString& a, char16_t b);
CString operator+(char16_t a, const CString& b);

// Aliases of the platform's spellings.
using CStringW = CString;

OHM_PLATFORM_API_END
