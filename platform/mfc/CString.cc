#include "mfc/CString.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <cstring>

#include "win/CrtChar.h"

namespace {

// Length up to the first terminator, as the C runtime sees a wide string.
std::size_t TerminatedLength(LPCWSTR text) noexcept { return text ? std::char_traits<char16_t>::length(text) : 0; }

// The text as far as the C runtime would read it.
std::u16string_view Terminated(LPCWSTR text) noexcept { return {text ? text : u"", TerminatedLength(text)}; }

int Clamp(int value, int low, int high) noexcept { return std::max(low, std::min(value, high)); }

}  // namespace

CString::CString(LPCWSTR text) : m_str(Terminated(text)) {}

CString::CString(LPCWSTR text, int length) : m_str(text ? std::u16string(text, std::max(length, 0)) : u"") {}

CString::CString(char16_t unit, int repeat) : m_str(static_cast<std::size_t>(std::max(repeat, 0)), unit) {}

char16_t CString::GetAt(int index) const {
  assert(index >= 0 && index < GetLength());
  return m_str[static_cast<std::size_t>(index)];
}

void CString::SetString(LPCWSTR text) { m_str.assign(Terminated(text)); }

void CString::SetString(LPCWSTR text, int length) {
  if (!text) return Empty();
  m_str.assign(text, static_cast<std::size_t>(std::max(length, 0)));
}

void CString::Append(LPCWSTR text) { m_str.append(Terminated(text)); }

CString& CString::operator=(LPCWSTR text) {
  SetString(text);
  return *this;
}

CString& CString::operator=(char16_t unit) {
  m_str.assign(1, unit);
  return *this;
}

CString& CString::operator+=(const CString& text) {
  m_str += text.m_str;
  return *this;
}

CString& CString::operator+=(LPCWSTR text) {
  Append(text);
  return *this;
}

CString& CString::operator+=(char16_t unit) {
  m_str += unit;
  return *this;
}

CString CString::Left(int count) const { return Mid(0, count); }

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
  first = Clamp(first, 0, GetLength());
  count = Clamp(count, 0, GetLength() - first);
  return CString(std::u16string_view(m_str).substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count)));
}

int CString::Find(char16_t unit, int start) const noexcept {
  if (start < 0 || start >= GetLength()) return -1;
  const std::u16string_view text = Terminated(m_str.c_str());
  const std::size_t hit = text.find(unit, static_cast<std::size_t>(start));
  return hit == std::u16string_view::npos ? -1 : static_cast<int>(hit);
}

int CString::Find(LPCWSTR sub, int start) const noexcept {
  if (start < 0 || start > GetLength()) return -1;
  const std::u16string_view text = Terminated(m_str.c_str());
  if (static_cast<std::size_t>(start) > text.size()) return -1;
  const std::size_t hit = text.find(Terminated(sub), static_cast<std::size_t>(start));
  return hit == std::u16string_view::npos ? -1 : static_cast<int>(hit);
}

int CString::ReverseFind(char16_t unit) const noexcept {
  const std::size_t hit = Terminated(m_str.c_str()).rfind(unit);
  return hit == std::u16string_view::npos ? -1 : static_cast<int>(hit);
}

int CString::FindOneOf(LPCWSTR charSet) const noexcept {
  const std::u16string_view set = Terminated(charSet);
  if (set.empty()) return -1;
  const std::size_t hit = Terminated(m_str.c_str()).find_first_of(set);
  return hit == std::u16string_view::npos ? -1 : static_cast<int>(hit);
}

int CString::Replace(LPCWSTR oldText, LPCWSTR newText) {
  const std::u16string_view from = Terminated(oldText);
  if (from.empty()) return 0;
  const std::u16string_view to = Terminated(newText);
  std::u16string result;
  int count = 0;
  std::size_t pos = 0;
  for (std::size_t hit; (hit = m_str.find(from, pos)) != std::u16string::npos; pos = hit + from.size()) {
    if (count++ == 0) result.reserve(m_str.size());
    result.append(m_str, pos, hit - pos).append(to);
  }
  if (count == 0) return 0;
  result.append(m_str, pos);
  m_str.swap(result);
  return count;
}

int CString::Replace(char16_t oldUnit, char16_t newUnit) {
  int count = 0;
  for (char16_t& unit : m_str) {
    if (unit == oldUnit) {
      unit = newUnit;
      ++count;
    }
  }
  return count;
}

int CString::Insert(int index, char16_t unit) { return Insert(index, std::u16string(1, unit).c_str()); }

int CString::Insert(int index, LPCWSTR text) {
  index = Clamp(index, 0, GetLength());
  m_str.insert(static_cast<std::size_t>(index), Terminated(text));
  return GetLength();
}

int CString::Delete(int index, int count) {
  index = std::max(index, 0);
  if (index < GetLength() && count > 0) {
    m_str.erase(static_cast<std::size_t>(index), static_cast<std::size_t>(std::min(count, GetLength() - index)));
  }
  return GetLength();
}

CString& CString::MakeUpper() {
  std::transform(m_str.begin(), m_str.end(), m_str.begin(), CrtToUpper);
  return *this;
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }
CString& CString::TrimLeft() {
  m_str.erase(m_str.begin(), std::find_if_not(m_str.begin(), m_str.end(), CrtIsSpace));
  return *this;
}

CString& CString::TrimRight() {
  m_str.erase(std::find_if_not(m_str.rbegin(), m_str.rend(), CrtIsSpace).base(), m_str.end());
  return *this;
}

CString& CString::TrimRight(char16_t unit) { return TrimRight(std::u16string(1, unit).c_str()); }

CString& CString::TrimRight(LPCWSTR units) {
  const std::size_t last = m_str.find_last_not_of(Terminated(units));
  m_str.erase(last == std::u16string::npos ? 0 : last + 1);
  return *this;
}

int CString::Compare(LPCWSTR other) const noexcept { return Terminated(m_str.c_str()).compare(Terminated(other)); }

int CString::CompareNoCase(LPCWSTR other) const noexcept {
  const std::u16string_view a = Terminated(m_str.c_str());
  const std::u16string_view b = Terminated(other);
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    const int diff = int{CrtToLower(a[i])} - int{CrtToLower(b[i])};
    if (diff != 0) return diff;
  }
  return a.size() < b.size() ? -1 : (a.size() > b.size() ? 1 : 0);
}

LPWSTR CString::GetBuffer(int minLength) {
  if (minLength > GetLength()) m_str.resize(static_cast<std::size_t>(minLength));
  return m_str.data();
}

void CString::ReleaseBuffer(int newLength) {
  if (newLength < 0) newLength = static_cast<int>(TerminatedLength(m_str.c_str()));
  m_str.resize(static_cast<std::size_t>(std::min(newLength, GetLength())));
}

CString operator+(const CString& a, const CString& b) {
  CString sum(a);
  sum += b;
  return sum;
}

CString operator+(const CString& a, LPCWSTR b) {
  CString sum(a);
  sum += b;
  return sum;
}

CString operator+(LPCWSTR a, const CString& b) {
  CString sum(a);
  sum += b;
  return sum;
}

CString operator+(const CString& a, char16_t b) {
  CString sum(a);
  sum += b;
  return sum;
}

CString operator+(char16_t a, const CString& b) {
  CString sum(a);
  sum += b;
  return sum;
}
