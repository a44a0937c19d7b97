// The tag layer of DXF drawing files: a DXF text is a series of tags, each a
// group code line (an integer, blanks around it allowed) and a value line.
// This layer splits a file into tags and joins tags into a file, and knows
// nothing of entities; the drawing reader and writer stand on it.
//
// Values stay raw bytes here: their encoding is known only once the header
// has been read (DxfTextCodec turns them into text).
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct DxfTag {
  int code = 0;       // group code
  std::string value;  // value line, raw bytes, without its line end
  int line = 0;       // line number of the group code, counting from 1
};

enum class DxfTagStatus {
  Ok,
  Empty,         // no tag at all
  Binary,        // a binary DXF file, which this layer does not read
  BadGroupCode,  // a group code line that is not an integer
  MissingValue,  // the file ends after a group code
};

// Splits `text` into `tags` (replaced). Lines end in LF, CRLF or CR. On
// failure `tags` is emptied and `errorLine` names the line at fault.
DxfTagStatus readDxfTags(std::string_view text, std::vector<DxfTag>& tags, int& errorLine);

// Appends one tag as the host writes it: the group code right-aligned in
// three places, the value on the next line, both ended by CRLF.
void appendDxfTag(std::string& out, int code, std::string_view value);
