// The one export macro of libOhmUtils.so. The library is built with hidden
// visibility; what carries OHMUTILS_EXPORT is its interface, and nothing else
// can be reached from outside.
#pragma once

#define OHMUTILS_EXPORT __attribute__((visibility("default")))
