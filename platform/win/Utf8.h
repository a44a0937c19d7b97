// The one place where text changes encoding. Inside the library all text is
// UTF-16; UTF-8 appears only at the edges: file contents, command lines, the
// terminal, file system names. A lone surrogate or a malformed UTF-8 sequence
// becomes U+FFFD, so conversion never fails and never drops the rest of a text.
#pragma once

#include <string>
#include <string_view>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

std::string Utf16ToUtf8(std::u16string_view text);
std::u16string Utf8ToUtf16(std::string_view text);

OHM_PLATFORM_API_END
