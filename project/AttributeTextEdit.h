// Replaces attribute values in the text of a DXF file and nothing else: the
// bytes of each value line change; every other byte (line ends, spacing of
// group codes, the code page, groups that no reader models) stays as the
// file had it. An attribute is named by the handle of the block reference it
// belongs to and its tag, as a drawing's reader shows them.
//
// The edit checks what it replaces: each value must be where the file puts
// that attribute and hold the value the caller saw, or nothing is replaced.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct AttributeTextEdit {
  std::uint64_t handle = 0;  // the block reference's
  std::u16string tag;        // compared ignoring ASCII case
  std::u16string oldValue;
  std::u16string newValue;
};

struct EditedText {
  std::string text;     // the whole new file text; empty when `problem` is set
  std::string problem;  // why nothing was replaced; empty on success
};

// `text` with every edit made, in the file's own code page.
EditedText EditAttributeValues(std::string_view text, const std::vector<AttributeTextEdit>& edits);
