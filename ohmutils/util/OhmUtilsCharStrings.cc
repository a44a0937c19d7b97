#include "ohmutils/util/OhmUtilsCharStrings.h"

#include <algorithm>
#include <string_view>

#include "win/CharSteps.h"
#include "win/fs/PathFunctions.h"

namespace {

// `steps` CharNextW steps from `text`; stops early on the terminator, where
// CharNextW would stay anyway.
const char16_t* stepForward(const char16_t* text, long long steps) {
  for (; steps > 0 && *text; --steps) text = CharNextW(text);
  return text;
}

// A one-based count turned into an index without wrapping.
int countToIndex(unsigned count) { return static_cast<int>(std::min<long long>(count, 1LL << 31) - 1); }

}  // namespace

unsigned GetCharCount(const char16_t* text) {
  unsigned count = 0;
  for (; text && *text; text = CharNextW(text)) ++count;
  return count;
}

int GetByteCount(const char16_t* text, int charCount) {
  if (!text) return 0;
  const int length = static_cast<int>(std::u16string_view(text).size());
  if (charCount == -1) return length;
  if (charCount <= 0) return 0;
  return static_cast<int>(stepForward(text, charCount) - text);
}

int GetCharIndexOfSubInString(const char16_t* text, const char16_t* sub, bool ignoreCase, int startIndex) {
  if (!text || !sub) return -1;
  CString haystack(text);
  CString needle(sub);
  if (ignoreCase) {
    haystack.MakeUpper();
    needle.MakeUpper();
  }
  const int startUnit = startIndex == 0 ? 0 : GetByteCount(haystack, startIndex);
  const int found = haystack.Find(needle, startUnit);
  if (found < 0) return -1;
  return static_cast<int>(GetCharCount(haystack.Left(found)));
}

const char16_t* GetStringAtCharIndex(const char16_t* text, int index) {
  if (index <= 0 || !text) return text;
  return stepForward(text, index);
}

const char16_t* GetStringAtCharCount(const char16_t* text, unsigned count) {
  return GetStringAtCharIndex(text, countToIndex(count));
}

const char16_t* RevGetStringAtCharIndex(const char16_t* text, int index) {
  if (!text || !*text) return nullptr;
  const char16_t* position = GetStringAtCharCount(text, GetCharCount(text));
  for (; index > 0 && position != text; --index) position = CharPrevW(text, position);
  return position;
}

const char16_t* RevGetStringAtCharCount(const char16_t* text, unsigned count) {
  return RevGetStringAtCharIndex(text, countToIndex(count));
}

bool SetStringWithLength(CString& output, const char16_t* source, int limitUnits) {
  output.Empty();
  if (!source || limitUnits <= 0) return false;
  const std::u16string_view text(source);
  output.SetString(source, static_cast<int>(std::min<std::size_t>(text.size(), limitUnits)));
  return true;
}

bool AppendLimitMax(CString& output, const char16_t* source, unsigned limitUnits) {
  if (!source) return false;
  const std::u16string_view text(source);
  output += CString(source, static_cast<int>(std::min<std::size_t>(text.size(), limitUnits)));
  return true;
}

bool TrimStringMiddle(const CString& source, CString& output, unsigned limit) {
  const CString text(source);  // the output may be the source itself
  const unsigned count = GetCharCount(text);
  if (count < limit) {
    output = text;
    return false;
  }
  output.Empty();
  const BOOL compacted = PathCompactPathExW(output.GetBuffer(static_cast<int>(count)), text, limit, 0);
  output.ReleaseBuffer();
  return compacted != FALSE;
}

void TrimEndingBackslashes(CString& text) { text.TrimRight(u'\\'); }
