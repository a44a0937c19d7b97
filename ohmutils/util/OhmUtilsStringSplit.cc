#include "ohmutils/util/OhmUtilsStringSplit.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "ohmutils/util/OhmUtilsStringSplit_internal.h"
#include "win/CrtChar.h"

namespace ohm_internal {

std::int32_t stoiDecimal(const std::u16string& text) {
  std::size_t i = 0;
  while (i < text.size() && CrtIsSpace(text[i])) ++i;
  const bool negative = i < text.size() && text[i] == u'-';
  if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) ++i;
  const std::size_t firstDigit = i;
  std::int64_t magnitude = 0;
  bool overflow = false;
  for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
    magnitude = magnitude * 10 + (text[i] - u'0');
    overflow = overflow || magnitude > std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
    if (overflow) magnitude = 0;  // keep reading the digits; the result is out of range anyway
  }
  if (i == firstDigit) throw std::invalid_argument("invalid stoi argument");
  const std::int64_t value = negative ? -magnitude : magnitude;
  if (overflow || value > std::numeric_limits<std::int32_t>::max() || value < std::numeric_limits<std::int32_t>::min())
    throw std::out_of_range("stoi argument out of range");
  return static_cast<std::int32_t>(value);
}

}  // namespace ohm_internal

void OhmUtilsSplitString(const std::u16string& source, char16_t separator, std::vector<std::u16string>& items) {
  // `source` may be one of `items`; cut from a copy.
  const std::u16string text(source);
  items.clear();
  std::size_t pos = 0;
  for (std::size_t hit; (hit = text.find(separator, pos)) != std::u16string::npos; pos = hit + 1) {
    items.push_back(text.substr(pos, hit - pos));
  }
  items.push_back(text.substr(pos));
}

void OhmUtilsCvtStringToIntArray(const std::vector<std::u16string>& strings, std::vector<std::int32_t>& values) {
  values.clear();
  for (const std::u16string& text : strings) values.push_back(ohm_internal::stoiDecimal(text));
}

bool GetToken(CString& source, CString& token, LPCWSTR delimiters, CString* delimiterFound, bool wholeDelimiter) {
  if (!delimiters || (wholeDelimiter && *delimiters == u'\0')) return false;
  const int skip = wholeDelimiter ? static_cast<int>(std::char_traits<char16_t>::length(delimiters)) : 1;
  for (;;) {
    const int hit = wholeDelimiter ? source.Find(delimiters) : source.FindOneOf(delimiters);
    if (hit < 0) return false;
    if (hit == 0) {
      source.Delete(0, 1);
      continue;
    }
    if (delimiterFound) *delimiterFound = source.GetAt(hit);
    token = source.Left(hit);
    source = source.Mid(hit + skip);
    return true;
  }
}

void OhmUtilsReplaceSpecialXMLCharsInString(const ZdString& text, char16_t replacement, ZdString& output) {
  static constexpr char16_t kSpecial[] = u"<>/\\\":?*|";
  std::u16string buffer(text.str());
  for (const char16_t special : std::u16string_view(kSpecial))
    std::replace(buffer.begin(), buffer.end(), special, replacement);
  output = ZdString(buffer.c_str());
}
