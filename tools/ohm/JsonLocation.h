// Where a value stands in a JSON text, so that a message about a project file
// can name the line and column a person must look at. nlohmann::json keeps no
// positions of its values; these functions find them again in the text.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

// A place in a text, both counted from 1; columns count characters (UTF-8
// sequences), not bytes.
struct TextPosition {
  std::size_t line = 1;
  std::size_t column = 1;
};

// The position of the byte at `offset` (the end of the text if beyond it).
TextPosition PositionOfOffset(std::string_view text, std::size_t offset);

// The offset of the first byte of the value that `pointer` names in `text`,
// which must be well-formed JSON, or with `memberName` of the name of the
// object member it names; npos when there is no such value.
std::size_t OffsetOfValue(std::string_view text, const nlohmann::json::json_pointer& pointer, bool memberName = false);

// What nlohmann::json lets pass or can't place: an object that names a member
// twice (it would keep the last silently), and a number too large for a
// double. The first such place in `text`, scanned once; nullopt when none.
struct JsonFault {
  std::size_t offset = 0;
  std::string message;
};
std::optional<JsonFault> FindJsonFault(std::string_view text);
