#include "zd/ZdString.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>

ZdString::ZdString(const char16_t* text) : m_str(text ? text : u"") {}

ZdString::ZdString(char16_t unit) : m_str(1, unit) {}

ZdString::ZdString(ZdDbHandle handle) {
  std::uint64_t value = handle.value();
  do {
    m_str.insert(m_str.begin(), u"0123456789ABCDEF"[value & 0xF]);
    value >>= 4;
  } while (value != 0);
}

ZdString& ZdString::setEmpty() noexcept {
  m_str.clear();
  return *this;
}

ZdString& ZdString::assign(const ZdString& other) {
  if (this != &other) m_str = other.m_str;
  return *this;
}

ZdString& ZdString::assign(const char16_t* text) {
  m_str = text ? text : u"";
  return *this;
}

ZdString& ZdString::append(const ZdString& other) {
  m_str += other.m_str;
  return *this;
}

ZdString& ZdString::append(char16_t unit) {
  m_str += unit;
  return *this;
}

ZdString ZdString::concat(const ZdString& other) const {
  ZdString joined(*this);
  return joined.append(other);
}

int ZdString::compare(const ZdString& other) const noexcept { return m_str.compare(other.m_str); }

int ZdString::compareNoCase(const ZdString& other) const noexcept {
  UErrorCode status = U_ZERO_ERROR;
  const int32_t order = u_strCaseCompare(m_str.data(), static_cast<int32_t>(m_str.size()), other.m_str.data(),
                                         static_cast<int32_t>(other.m_str.size()), U_FOLD_CASE_DEFAULT, &status);
  return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

int ZdString::find(char16_t unit, int start) const noexcept {
  if (start < 0) start = 0;
  const std::size_t hit = m_str.find(unit, static_cast<std::size_t>(start));
  return hit == std::u16string::npos ? -1 : static_cast<int>(hit);
}

int ZdString::find(const ZdString& text, int start) const noexcept {
  if (start < 0) start = 0;
  const std::size_t hit = m_str.find(text.m_str, static_cast<std::size_t>(start));
  return hit == std::u16string::npos ? -1 : static_cast<int>(hit);
}

int ZdString::findRev(char16_t unit) const noexcept {
  const std::size_t hit = m_str.rfind(unit);
  return hit == std::u16string::npos ? -1 : static_cast<int>(hit);
}

ZdString ZdString::substr(int start, int count) const {
  const int size = static_cast<int>(m_str.size());
  start = std::clamp(start, 0, size);
  if (count < 0 || count > size - start) count = size - start;
  return ZdString(std::u16string_view(m_str).substr(static_cast<std::size_t>(start), static_cast<std::size_t>(count)));
}
