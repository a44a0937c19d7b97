#include "zd/dxf/DxfTags.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view kBinarySentinel = "AutoCAD Binary DXF";

// The next line of `text` from `pos` (without its end); moves `pos` past the end.
std::string_view nextLine(std::string_view text, std::size_t& pos) {
  const std::size_t end = std::min(text.find_first_of("\r\n", pos), text.size());
  const std::string_view line = text.substr(pos, end - pos);
  pos = end;
  if (pos < text.size() && text[pos] == '\r') ++pos;
  if (pos < text.size() && text[pos] == '\n') ++pos;
  return line;
}

std::string_view trimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool parseGroupCode(std::string_view line, int& code) {
  const std::string_view digits = trimBlanks(line);
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code);
  return error == std::errc() && end == digits.data() + digits.size() && !digits.empty();
}

}  // namespace

DxfTagStatus readDxfTags(std::string_view text, std::vector<DxfTag>& tags, int& errorLine) {
  tags.clear();
  errorLine = 0;
  if (text.substr(0, kBinarySentinel.size()) == kBinarySentinel) return DxfTagStatus::Binary;
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);  // a UTF-8 byte order mark
  // One allocation for all tags: two lines each.
  tags.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) / 2 + 1);
  std::size_t pos = 0;
  for (int line = 1; pos < text.size(); line += 2) {
    // Blank lines behind the last tag are no tag.
    if (text.find_first_not_of(" \t\r\n", pos) == std::string_view::npos) break;
    DxfTag tag;
    tag.line = line;
    if (!parseGroupCode(nextLine(text, pos), tag.code)) {
      errorLine = line;
      tags.clear();
      return DxfTagStatus::BadGroupCode;
    }
    if (pos >= text.size()) {
      errorLine = line;
      tags.clear();
      return DxfTagStatus::MissingValue;
    }
    tag.value = std::string(nextLine(text, pos));
    tags.push_back(std::move(tag));
  }
  return tags.empty() ? DxfTagStatus::Empty : DxfTagStatus::Ok;
}

void appendDxfTag(std::string& out, int code, std::string_view value) {
  std::string codeText = std::to_string(code);
  if (codeText.size() < 3) codeText.insert(0, 3 - codeText.size(), ' ');
  out.append(codeText).append("\r\n").append(value).append("\r\n");
}
