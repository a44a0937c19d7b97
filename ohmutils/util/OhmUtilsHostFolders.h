// The folders that the host application and the suite work with, read from
// the host's settings and variables and the suite's global values. Stateless
// free functions; they give the values no meaning of their own. Calls that
// reach the host belong on its main thread.
#pragma once

#include <string>
#include <vector>

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"

// Appends each folder of the host's search path setting "ZEDA" (a semicolon
// list; empty pieces are skipped) to `folders`, which isn't emptied first.
// Always true; nothing is appended when the setting can't be read.
OHMUTILS_EXPORT bool GetZedaPath(std::vector<std::u16string>& folders);

// Sets `folder` to the host setting "TemplatePath" (up to 1023 units). False
// only when the host reports an error. Whenever the host writes nothing (an
// error, or a value too long to hand over, which counts as success) `folder`
// keeps what it held.
OHMUTILS_EXPORT bool OhmGetZedaTemplateFolder(CString& folder);

// Copies the host's roamable root folder into `buffer` of `size` units. True;
// false with `buffer` untouched when the host has none or it doesn't fit.
OHMUTILS_EXPORT bool GetRoamableRootFolder(char16_t* buffer, int size);

// Sets `folder` to the suite's user folder "GBL_wd_usr": through the suite's
// Lisp when a document is current, else from the suite's global values.
// Always true; `folder` keeps its value when there is none, so the caller
// tells "missing" from "empty" by what it put there before.
OHMUTILS_EXPORT bool GetUserDirectory(CString& folder);

// The host variable "DWGTITLED" (whether the drawing has been named); 0 when
// the host can't tell.
OHMUTILS_EXPORT int GetDWGTITLEDValue();
