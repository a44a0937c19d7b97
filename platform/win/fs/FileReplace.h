// Replacing a file's contents so that readers only ever see the old file or
// the new one: the bytes go to a new file beside it ("NAME.~PID.N"), which
// takes the old file's mode, is flushed to disk and renamed over the file,
// and the folder is flushed after the rename.
// A process killed midway can leave its new file behind; the next
// replacement of the same file removes those whose process is gone.
//
// Thread safety: any thread; concurrent replacements of one file each
// complete, the last rename wins.
#pragma once

#include <string>
#include <string_view>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

// Replaces the contents of `path` (POSIX) with `bytes`. 0, or the errno of
// the failure; then `path` is as it was and nothing is left beside it.
int ReplaceFileContents(const std::string& path, std::string_view bytes);

OHM_PLATFORM_API_END
