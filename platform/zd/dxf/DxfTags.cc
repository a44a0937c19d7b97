#include "zd/dxf/DxfTags.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace {

constexpr std::string_view kBinarySentinel = "AutoCAD Binary DXF";
constexpr int kComment = 999;

// The next line of `text` from `pos` (without its end); moves `pos` past the end.
std::string_view nextLine(std::string_view text, std::size_t& pos) {
  const char* const begin = text.data() + pos;
  const char* const end = text.data() + text.size();
  const char* stop = static_cast<const char*>(std::memchr(begin, '\n', static_cast<std::size_t>(end - begin)));
  if (!stop) stop = end;
  // A CR alone ends a line too (old Macintosh files).
  if (const void* cr = std::memchr(begin, '\r', static_cast<std::size_t>(stop - begin))) stop = static_cast<const char*>(cr);
  const std::string_view line(begin, static_cast<std::size_t>(stop - begin));
  pos += line.size();
  if (pos < text.size() && text[pos] == '\r') ++pos;
  if (pos < text.size() && text[pos] == '\n') ++pos;
  return line;
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

// A group code line: an integer with blanks around it allowed.
bool parseGroupCode(std::string_view line, int& code) {
  const char* first = line.data();
  const char* last = first + line.size();
  while (first != last && isBlank(*first)) ++first;
  while (last != first && isBlank(last[-1])) --last;
  if (first == last) return false;
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

DxfTagReader::DxfTagReader(std::string_view text) : mText(text) {
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
    if (mPos >= mText.size() || onlyBlanksFrom(mText, mPos)) return false;
    tag.line = mLine;
    const std::string_view codeLine = nextLine(mText, mPos);
    if (!parseGroupCode(codeLine, tag.code)) return fail(tag.line, "group code expected");
    if (!isDxfGroupCode(tag.code)) return fail(tag.line, "group code " + std::to_string(tag.code) + " is not a DXF group code");
    if (mPos >= mText.size()) return fail(tag.line, "value of group " + std::to_string(tag.code) + " expected, the file ends");
    tag.value = nextLine(mText, mPos);
    mLine += 2;
    if (tag.code != kComment) return true;
  }
}

void appendDxfTag(std::string& out, int code, std::string_view value) {
  char digits[12];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, code);
  const std::size_t length = static_cast<std::size_t>(end - digits);
  if (length < 3) out.append(3 - length, ' ');
  out.append(digits, length).append("\r\n").append(value).append("\r\n");
}
