// DXF drawings written by hand, as R12-style writers of other programs emit
// them: a header with version and code page, blocks without content, and
// inserts whose attributes follow them up to a SEQEND. Line ends as asked.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

struct SnippetInsert {
  std::string handle;  // hexadecimal
  std::string block;
  double y = 0;                                                 // the insertion point's y
  std::vector<std::pair<std::string, std::string>> attributes;  // tag, value (bytes as the file holds them)
};

inline std::string DxfSnippet(const std::string& version, const std::string& codePage,
                              const std::vector<SnippetInsert>& inserts, const std::string& eol = "\n") {
  std::string text;
  auto group = [&](const std::string& code, const std::string& value) { text += code + eol + value + eol; };
  group("0", "SECTION"), group("2", "HEADER"), group("9", "$ACADVER"), group("1", version);
  if (!codePage.empty()) group("9", "$DWGCODEPAGE"), group("3", codePage);
  group("0", "ENDSEC"), group("0", "SECTION"), group("2", "BLOCKS");
  std::vector<std::string> blocks;
  for (const SnippetInsert& insert : inserts) {
    bool known = false;
    for (const std::string& block : blocks) known = known || block == insert.block;
    if (known) continue;
    blocks.push_back(insert.block);
    group("0", "BLOCK"), group("8", "0"), group("2", insert.block), group("70", "2"), group("0", "ENDBLK");
  }
  group("0", "ENDSEC"), group("0", "SECTION"), group("2", "ENTITIES");
  std::uint64_t next = 0x900;
  for (const SnippetInsert& insert : inserts) {
    group("0", "INSERT"), group("5", insert.handle), group("8", "0"), group("66", "1"), group("2", insert.block);
    group(" 10", "0.0"), group(" 20", std::to_string(insert.y)), group(" 30", "0.0");
    for (const auto& [tag, value] : insert.attributes) {
      char handle[32];
      std::snprintf(handle, sizeof handle, "%llX", static_cast<unsigned long long>(next++));
      group("0", "ATTRIB"), group("5", handle), group("8", "0"), group(" 10", "0.0"), group(" 20", "0.0");
      group(" 40", "2.5"), group("  1", value), group("  2", tag), group(" 70", "0");
    }
    char end[32];
    std::snprintf(end, sizeof end, "%llX", static_cast<unsigned long long>(next++));
    group("0", "SEQEND"), group("5", end), group("8", "0");
  }
  group("0", "ENDSEC"), group("0", "EOF");
  return text;
}
