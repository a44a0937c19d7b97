#include "zd/dxf/DxfValues.h"

#include <charconv>
#include <cmath>

namespace {

std::string_view trimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Parses all of `value` (blanks around it allowed) with from_chars.
template <typename Number, typename... Options>
std::optional<Number> parseWhole(std::string_view value, Options... options) {
  value = trimBlanks(value);
  if (!value.empty() && value.front() == '+') value.remove_prefix(1);
  Number number{};
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number, options...);
  if (value.empty() || error != std::errc() || end != value.data() + value.size()) return std::nullopt;
  return number;
}

}  // namespace

std::optional<std::int64_t> parseDxfInteger(std::string_view value) { return parseWhole<std::int64_t>(value); }

std::optional<double> parseDxfReal(std::string_view value) {
  const auto real = parseWhole<double>(value);
  if (!real || !std::isfinite(*real)) return std::nullopt;
  return real;
}

std::optional<std::uint64_t> parseDxfHandle(std::string_view value) {
  value = trimBlanks(value);
  if (value.empty() || value.size() > 16 || value.front() == '-' || value.front() == '+') return std::nullopt;
  const auto handle = parseWhole<std::uint64_t>(value, 16);
  if (!handle || *handle == 0 || *handle >= (std::uint64_t{1} << 63)) return std::nullopt;
  return handle;
}

std::string formatDxfReal(double value) {
  char buffer[32];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
  return error == std::errc() ? std::string(buffer, end) : std::string("0.0");
}

std::string formatDxfHandle(std::uint64_t handle) {
  char buffer[20];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, handle, 16);
  std::string text(buffer, error == std::errc() ? end : buffer);
  for (char& digit : text) digit = static_cast<char>(digit >= 'a' && digit <= 'f' ? digit - 'a' + 'A' : digit);
  return text;
}
