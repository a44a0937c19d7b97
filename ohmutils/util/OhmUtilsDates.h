// Dates, times and separators in the form of the user's locale, and a
// sortable stamp of a file's last write time. A thin layer over the
// platform's locale formatting; stateless, safe on any thread. Text is
// limited to 255 units.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"
#include "win/locale/LocaleFunctions.h"

// Formats the date of `time` with `flags` (DATE_SHORTDATE: the locale's short
// date) or after the picture `format` ("yyyyMMdd"; null: the locale's). With
// `append`, adds one blank and the date to `output`; otherwise replaces it.
// A failing format gives the empty text (in append mode, just the blank).
OHMUTILS_EXPORT void FormatDate(const SYSTEMTIME* time, CString& output, bool append, DWORD flags,
                                const char16_t* format);

// FormatDate for the time of `time` ("HHmmss"; null: the locale's default time).
OHMUTILS_EXPORT void FormatTime(const SYSTEMTIME* time, CString& output, bool append, DWORD flags,
                                const char16_t* format);

// Sets `output` to the current local date and time: short date, one blank,
// default time. `output` is left as it was if the clock can't be read.
OHMUTILS_EXPORT void GetLocaleDateTime(CString& output);

// Sets `output` to the last write time of the file `path` (wildcards: the
// first match) in local time: mode 2 the short date only, mode 3 the time
// only, any other mode date, one blank, time. With a `stamp`, also sets it to
// "yyyyMMddHHmmss" of that time (14 digits that sort by time). Both are left
// as they were for a null or empty path, a file that isn't there, or a time
// before 1970.
OHMUTILS_EXPORT void GetFileLocaleDateTime(const char16_t* path, CString& output, int mode, CString* stamp);

// Sets `output` to the locale's decimal separator; "." when it can't be read.
OHMUTILS_EXPORT void GetLocaleDecimalSep(CString& output);

// Sets `output` to the locale's list separator; "," when it can't be read.
OHMUTILS_EXPORT void GetLocaleListSep(CString& output);
