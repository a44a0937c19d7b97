// The platform's locale formatting: dates and times in the form of the
// user's locale, or after a caller's Windows picture, and the locale's
// separators. The user's locale is the one the environment names (LC_ALL,
// then LC_TIME, then LANG; "C", "POSIX" or none mean en_US); ICU supplies its
// short date, default time, names and decimal separator. The list separator
// is ';' where the decimal separator is ',' and ',' elsewhere, as the
// platform's locales have it.
//
// Pictures: in dates d, dd (day), ddd, dddd (day name), M, MM (month), MMM,
// MMMM (month name), y (year of the century, no leading zero), yy, yyyy
// (year), g, gg (era); in times h, hh (12-hour clock), H, HH (24-hour
// clock), m, mm, s, ss, t, tt (AM/PM marker, first letter or whole). Text in
// single quotes is copied ('' is one quote); every other unit is copied.
//
// Results count units with the terminator. Failures give 0 and set the
// thread's last error. Safe on any thread; each locale's data is read from
// ICU once and kept.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

struct SYSTEMTIME {
  WORD wYear;
  WORD wMonth;      // 1 to 12
  WORD wDayOfWeek;  // 0 Sunday; the formatting works it out itself
  WORD wDay;
  WORD wHour;
  WORD wMinute;
  WORD wSecond;
  WORD wMilliseconds;
};

using LCID = DWORD;
using LCTYPE = DWORD;

inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
inline constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;  // the same locale here

inline constexpr DWORD DATE_SHORTDATE = 0x1;  // the locale's short date; no picture with it

inline constexpr LCTYPE LOCALE_SLIST = 0x0C;          // list separator
inline constexpr LCTYPE LOCALE_SDECIMAL = 0x0E;       // decimal separator
inline constexpr LCTYPE LOCALE_SSHORTDATE = 0x1F;     // short date picture
inline constexpr LCTYPE LOCALE_S1159 = 0x28;          // AM marker
inline constexpr LCTYPE LOCALE_S2359 = 0x29;          // PM marker
inline constexpr LCTYPE LOCALE_STIMEFORMAT = 0x1003;  // default time picture

// Formats the date of `time` (null: now, local time) after `picture`, or the
// locale's short date when `picture` is null, into `out` of `size` units.
// Units written; with a size of 0, the units needed. 0 and
// ERROR_INVALID_PARAMETER for another locale or a date that doesn't exist,
// ERROR_INVALID_FLAGS for flags other than 0 and DATE_SHORTDATE or for
// DATE_SHORTDATE with a picture, ERROR_INSUFFICIENT_BUFFER when `out` is too small.
int GetDateFormatW(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCWSTR picture, LPWSTR out, int size);

// Formats the time of `time` (null: now) after `picture`, or the locale's
// default time when `picture` is null; like GetDateFormatW, flags must be 0.
int GetTimeFormatW(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCWSTR picture, LPWSTR out, int size);

// One text of the locale (a LOCALE_S* type above) into `out` of `size`
// units; units written, or needed with a size of 0. 0 and
// ERROR_INVALID_PARAMETER for another locale, ERROR_INVALID_FLAGS for
// another type, ERROR_INSUFFICIENT_BUFFER when `out` is too small.
int GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR out, int size);

OHM_PLATFORM_API_END
