// The host's wildcard match of names and tags. A pattern is a list of
// alternatives separated by ','; the text matches when one alternative matches
// all of it. In an alternative, '*' stands for any run of characters (the
// empty one too), '?' for one character, '#' for one decimal digit, and every
// other character for itself. Time is linear in text times pattern.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

// True when `text` matches `pattern`; letters compare without regard to case
// when `ignoreCase` is set. False for a null argument.
bool zdutWcMatchEx(const char16_t* text, const char16_t* pattern, bool ignoreCase);

OHM_PLATFORM_API_END
