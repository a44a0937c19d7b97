// _wsplitpath_s: the C runtime's splitting of a path into drive, folder,
// file name and extension, with the runtime's buffer rules. The drive is
// "X:" when the path starts so; the folder runs through the last '\' or '/';
// the extension is the text from the last '.' of the last component; the
// name is what lies between.
#pragma once

#include <cstddef>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

using errno_t = int;

// Each part goes to its buffer of the given size in units, terminator
// included; a null buffer with size 0 skips that part. 0 on success; EINVAL
// for a null path, or a buffer and size that don't agree; ERANGE when a part
// doesn't fit its buffer. On failure every given buffer holds the empty string.
errno_t _wsplitpath_s(const char16_t* path, char16_t* drive, std::size_t driveSize, char16_t* dir, std::size_t dirSize,
                      char16_t* fname, std::size_t fnameSize, char16_t* ext, std::size_t extSize);

OHM_PLATFORM_API_END
