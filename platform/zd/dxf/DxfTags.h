// The tag layer of DXF drawing files: a DXF text is a series of tags, each a
// group code line (an integer, blanks around it allowed) and a value line.
// DxfTagReader walks a text one tag at a time (lines end in LF or CRLF, or
// all in CR); every tag it gives is a view
// into that text, so the text must outlive the tags. 999 comments are passed
// over wherever they stand. appendDxfTag joins tags into a file.
//
// Values stay raw bytes here: their encoding is known only once the header
// has been read (DxfTextCodec turns them into text).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

struct DxfTag {
  int code = 0;            // group code
  std::string_view value;  // value line, raw bytes, without its line end
  int line = 0;            // line number of the group code, counting from 1
};

// Whether `code` is a group code that DXF defines (0-79, 90-102, 105,
// 110-149, 160-179, 210-239, 270-481, 999, 1000-1071).
bool isDxfGroupCode(int code);

// Whether `text` starts as a binary DXF file, which this layer does not read.
bool isBinaryDxf(std::string_view text);

class DxfTagReader {
 public:
  // Reads `text` from its start, after a UTF-8 byte order mark.
  explicit DxfTagReader(std::string_view text);

  // The next tag (comments passed over). False at the end of the text
  // (blank lines at the end are no tag) or at a fault, which problem() names.
  bool next(DxfTag& tag);
  // What was wrong at problemLine(), empty when nothing was.
  const std::string& problem() const noexcept { return mProblem; }
  int problemLine() const noexcept { return mProblemLine; }
  // Byte offset in the text of the next tag's group code line.
  std::size_t offset() const noexcept { return mPos; }
  std::string_view text() const noexcept { return mText; }

 private:
  bool fail(int line, std::string problem);
  // Reads a group code line of blanks and up to four digits, the common
  // form, and moves past it; false (nothing moved) for any other.
  bool readPlainCode(int& code);
  std::string_view mText;
  char mLineEnd;  // '\n' (LF or CRLF), or '\r' for a text without any LF
  std::size_t mPos = 0;
  int mLine = 1;
  int mProblemLine = 0;
  std::string mProblem;
};

// Appends one tag as the host writes it: the group code right-aligned in
// three places, the value on the next line, both ended by CRLF.
void appendDxfTag(std::string& out, int code, std::string_view value);

OHM_PLATFORM_API_END
