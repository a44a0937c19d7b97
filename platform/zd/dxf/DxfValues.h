// Numbers in DXF tag values: integers, reals and handles (hexadecimal), as
// the reader parses them and the writer formats them. Values may carry
// blanks around them, as older writers right-align numbers.
//
// Free functions without state; safe from any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

// A decimal integer; nullopt for anything else (also out of 64-bit range).
std::optional<std::int64_t> parseDxfInteger(std::string_view value);
// A real in C notation; nullopt for anything else.
std::optional<double> parseDxfReal(std::string_view value);
// A handle: 1 to 16 hexadecimal digits, not 0 and below 2^63 (the host's
// handles never come near it); nullopt otherwise.
std::optional<std::uint64_t> parseDxfHandle(std::string_view value);

// The shortest text that reads back as the same real.
std::string formatDxfReal(double value);
// Upper-case hexadecimal digits without leading zeros.
std::string formatDxfHandle(std::uint64_t handle);

OHM_PLATFORM_API_END
