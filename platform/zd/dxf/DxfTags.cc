#include "zd/dxf/DxfTags.h"

#include <algorithm>
#include <charconv>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

constexpr std::string_view kBinarySentinel = "AutoCAD Binary DXF";
constexpr int kComment = 999;

// The first `lineEnd` in [begin, end), or end. Lines are short, so a
// library search costs more than it saves; sixteen bytes are compared at a
// time where the processor can.
const char* findLineEnd(const char* begin, const char* end, char lineEnd) {
  const char* at = begin;
#if defined(__SSE2__)
  const __m128i wanted = _mm_set1_epi8(lineEnd);
  for (; end - at >= 16; at += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const int mask = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted));
    if (mask != 0) return at + __builtin_ctz(static_cast<unsigned>(mask));
  }
#endif
  while (at != end && *at != lineEnd) ++at;
  return at;
}

// The next line of `text` from `pos` (without its end); moves `pos` past
// the end. Lines end in `lineEnd` ('\n', a CR before it dropped, or '\r'
// in a file of CR line ends).
std::string_view nextLine(std::string_view text, std::size_t& pos, char lineEnd) {
  const char* const begin = text.data() + pos;
  const char* const end = text.data() + text.size();
  const char* const stop = findLineEnd(begin, end, lineEnd);
  std::size_t length = static_cast<std::size_t>(stop - begin);
  pos += stop == end ? length : length + 1;
  if (lineEnd == '\n' && length > 0 && begin[length - 1] == '\r') --length;
  return {begin, length};
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

// A group code line: an integer with blanks around it allowed.
bool parseGroupCode(std::string_view line, int& code) {
  const char* first = line.data();
  const char* last = first + line.size();
  while (first != last && isBlank(*first)) ++first;
  while (last != first && isBlank(last[-1])) --last;
  if (first == last) return false;
  // Most codes are a few plain digits.
  if (last - first <= 4 && std::all_of(first, last, [](char c) { return c >= '0' && c <= '9'; })) {
    code = 0;
    for (; first != last; ++first) code = code * 10 + (*first - '0');
    return true;
  }
  const auto [end, error] = std::from_chars(first, last, code);
  return error == std::errc() && end == last;
}

bool onlyBlanksFrom(std::string_view text, std::size_t pos) {
  for (; pos < text.size(); ++pos)
    if (!isBlank(text[pos]) && text[pos] != '\r' && text[pos] != '\n') return false;
  return true;
}

}  // namespace

bool isDxfGroupCode(int code) {
  return (code >= 0 && code <= 79) || (code >= 90 && code <= 102) || code == 105 || (code >= 110 && code <= 149) ||
         (code >= 160 && code <= 179) || (code >= 210 && code <= 239) || (code >= 270 && code <= 481) ||
         code == kComment || (code >= 1000 && code <= 1071);
}

bool isBinaryDxf(std::string_view text) { return text.substr(0, kBinarySentinel.size()) == kBinarySentinel; }

DxfTagReader::DxfTagReader(std::string_view text)
    : mText(text), mLineEnd(text.find('\n') == std::string_view::npos ? '\r' : '\n') {
  if (mText.substr(0, 3) == "\xEF\xBB\xBF") mPos = 3;  // a UTF-8 byte order mark
}

bool DxfTagReader::fail(int line, std::string problem) {
  mProblemLine = line;
  mProblem = std::move(problem);
  mPos = mText.size();
  return false;
}

bool DxfTagReader::next(DxfTag& tag) {
  for (;;) {
    if (mPos >= mText.size()) return false;
    const std::size_t start = mPos;
    tag.line = mLine;
    if (readPlainCode(tag.code)) {
      // the common form: blanks and digits up to the line end
    } else if (!parseGroupCode(nextLine(mText, mPos, mLineEnd), tag.code)) {
      // Blank lines behind the last tag are no tag.
      if (onlyBlanksFrom(mText, start)) return mPos = mText.size(), false;
      return fail(tag.line, "group code expected");
    }
    if (!isDxfGroupCode(tag.code))
      return fail(tag.line, "group code " + std::to_string(tag.code) + " is not a DXF group code");
    if (mPos >= mText.size())
      return fail(tag.line, "value of group " + std::to_string(tag.code) + " expected, the file ends");
    tag.value = nextLine(mText, mPos, mLineEnd);
    mLine += 2;
    if (tag.code != kComment) return true;
  }
}

bool DxfTagReader::readPlainCode(int& code) {
  const char* at = mText.data() + mPos;
  const char* const end = mText.data() + mText.size();
  while (at != end && *at == ' ') ++at;
  const char* const digits = at;
  int value = 0;
  while (at != end && at - digits < 4 && *at >= '0' && *at <= '9') value = value * 10 + (*at++ - '0');
  if (at == digits || at == end) return false;
  if (*at == '\r' && mLineEnd == '\n' && at + 1 != end && at[1] == '\n') ++at;
  if (*at != mLineEnd) return false;
  code = value;
  mPos = static_cast<std::size_t>(at + 1 - mText.data());
  return true;
}

void appendDxfTag(std::string& out, int code, std::string_view value) {
  char digits[12];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, code);
  const std::size_t length = static_cast<std::size_t>(end - digits);
  if (length < 3) out.append(3 - length, ' ');
  out.append(digits, length).append("\r\n").append(value).append("\r\n");
}
