// Test helpers for UTF-16 text in traces and messages. (GoogleTest prints
// std::u16string values by itself.)
#pragma once

#include <string>

#include "win/Utf8.h"

inline std::string U8(const std::u16string& text) { return Utf16ToUtf8(text); }
inline std::u16string U16(const std::string& text) { return Utf8ToUtf16(text); }
