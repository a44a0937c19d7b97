// Windows date and time pictures: interpreting them, and turning ICU's date
// patterns into them. Private to the locale functions (not installed).
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "OhmPlatformExport.h"
#include "win/locale/LocaleFunctions.h"

OHM_PLATFORM_API_BEGIN

// What a locale gives the pictures: its names and markers.
struct LocaleNames {
  std::array<std::u16string, 12> months;  // January first
  std::array<std::u16string, 12> shortMonths;
  std::array<std::u16string, 7> days;  // Sunday first
  std::array<std::u16string, 7> shortDays;
  std::u16string era;  // of the current era
  std::u16string am;
  std::u16string pm;
};

// Which letters a picture interprets: the date's (d M y g) or the time's (h H m s t).
enum class PictureKind { Date, Time };

// `time` written after `picture`; letters of the other kind are copied.
std::u16string FormatPicture(std::u16string_view picture, PictureKind kind, const SYSTEMTIME& time,
                             const LocaleNames& names);

// The Windows picture of an ICU date or time pattern. Years become four
// digits, as in the platform's short dates; fields that pictures lack (time
// zones, fractions) are dropped; a narrow no-break space becomes a blank, the
// platform's separator before the AM/PM marker.
std::u16string PictureFromIcuPattern(std::u16string_view pattern);

// The day of the week (0 Sunday) of a date of the Gregorian calendar.
int DayOfWeek(int year, int month, int day);

OHM_PLATFORM_API_END
