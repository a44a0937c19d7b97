// The C runtime's bounded wide string functions, as the library uses them:
// copy into a buffer of known size, and cut a text into tokens in place.
#pragma once

#include <cstddef>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

using errno_t = int;

// Copies `source` with its terminator into `dest` of `size` units. 0; EINVAL
// for a null dest or a size of 0 (nothing written) or a null source (dest
// emptied); ERANGE when the text doesn't fit (dest emptied).
errno_t wcscpy_s(char16_t* dest, std::size_t size, const char16_t* source) noexcept;

// The next token of `text` (null: go on where `context` stands), skipping
// runs of any unit of `delimiters`; the token is terminated in place and
// `context` moves behind it. Null when no token is left, or for null
// delimiters or context.
char16_t* wcstok_s(char16_t* text, const char16_t* delimiters, char16_t** context) noexcept;

OHM_PLATFORM_API_END
