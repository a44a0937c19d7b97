// The standard wide string to int conversion, shared by the functions that
// read decimal text.
#pragma once

#include <cstdint>
#include <string>

namespace ohm_internal {

// Leading white space skipped, an optional sign, the digits; what follows is
// ignored. Throws std::invalid_argument("invalid stoi argument") without
// digits and std::out_of_range("stoi argument out of range") outside int32.
std::int32_t stoiDecimal(const std::u16string& text);

}  // namespace ohm_internal
