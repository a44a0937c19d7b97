#include "win/locale/LocaleFunctions.h"

#include <unicode/datefmt.h>
#include <unicode/dcfmtsym.h>
#include <unicode/dtfmtsym.h>
#include <unicode/smpdtfmt.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "win/LastError.h"
#include "win/WinError.h"
#include "win/locale/DatePicture.h"
#include "win/locale/LocaleFunctions_testing.h"

namespace {

using std::u16string;

// Everything the functions take from one locale.
struct LocaleData {
  LocaleNames names;
  u16string shortDate;  // pictures
  u16string timeFormat;
  u16string decimal;
  u16string list;
};

struct LocaleState {
  std::mutex mutex;
  std::map<std::string, std::unique_ptr<LocaleData>> locales;  // by locale name; never removed
  std::optional<DWORD> dateFault, timeFault, infoFault;
};

LocaleState& state() {
  static LocaleState s;
  return s;
}

std::optional<DWORD> takeFault(std::optional<DWORD>& fault) {
  std::lock_guard lock(state().mutex);
  return std::exchange(fault, std::nullopt);
}

int fail(DWORD error) {
  SetLastError(error);
  return 0;
}

// The locale the environment names, as ICU spells it ("de_DE" of "de_DE.UTF-8@euro").
std::string userLocaleName() {
  std::string name;
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value && *value) {
      name = value;
      break;
    }
  }
  name = name.substr(0, name.find_first_of(".@"));
  return name.empty() || name == "C" || name == "POSIX" ? "en_US" : name;
}

u16string text(const icu::UnicodeString& value) {
  return u16string(value.getBuffer(), static_cast<std::size_t>(value.length()));
}

// Names of an ICU array, from index `first` on; missing ones stay empty.
template <std::size_t N>
void copyNames(std::array<u16string, N>& target, const icu::UnicodeString* names, int32_t count, int32_t first) {
  for (std::size_t i = 0; i < N && names && first + static_cast<int32_t>(i) < count; ++i)
    target[i] = text(names[first + static_cast<int32_t>(i)]);
}

// An ICU name list getter called before its count is read.
using NameList = const icu::UnicodeString* (icu::DateFormatSymbols::*)(int32_t&) const;

template <std::size_t N>
void copyNames(std::array<u16string, N>& target, const icu::DateFormatSymbols& symbols, NameList list, int32_t first) {
  int32_t count = 0;
  const icu::UnicodeString* names = (symbols.*list)(count);
  copyNames(target, names, count, first);
}

LocaleNames namesOf(const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::DateFormatSymbols symbols(locale, status);
  LocaleNames names;
  if (U_FAILURE(status)) return names;
  copyNames(names.months, symbols, &icu::DateFormatSymbols::getMonths, 0);
  copyNames(names.shortMonths, symbols, &icu::DateFormatSymbols::getShortMonths, 0);
  copyNames(names.days, symbols, &icu::DateFormatSymbols::getWeekdays, 1);  // ICU counts from 1, Sunday
  copyNames(names.shortDays, symbols, &icu::DateFormatSymbols::getShortWeekdays, 1);
  int32_t count = 0;
  const icu::UnicodeString* eras = symbols.getEras(count);
  if (eras && count > 1) names.era = text(eras[1]);
  const icu::UnicodeString* markers = symbols.getAmPmStrings(count);
  if (markers && count > 1) {
    names.am = text(markers[0]);
    names.pm = text(markers[1]);
  }
  return names;
}

// The picture of ICU's format; `fallback` when ICU has none.
u16string pictureOf(icu::DateFormat* format, const char16_t* fallback) {
  const std::unique_ptr<icu::DateFormat> owned(format);
  auto* simple = dynamic_cast<icu::SimpleDateFormat*>(format);
  if (!simple) return fallback;
  icu::UnicodeString pattern;
  return PictureFromIcuPattern(text(simple->toPattern(pattern)));
}

std::unique_ptr<LocaleData> loadLocale(const std::string& name) {
  const icu::Locale locale(name.c_str());
  auto data = std::make_unique<LocaleData>();
  data->names = namesOf(locale);
  data->shortDate = pictureOf(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale), u"yyyy-MM-dd");
  data->timeFormat = pictureOf(icu::DateFormat::createTimeInstance(icu::DateFormat::kMedium, locale), u"HH:mm:ss");
  UErrorCode status = U_ZERO_ERROR;
  const icu::DecimalFormatSymbols symbols(locale, status);
  const auto decimalSymbol = icu::DecimalFormatSymbols::kDecimalSeparatorSymbol;
  data->decimal = U_SUCCESS(status) ? text(symbols.getSymbol(decimalSymbol)) : u".";
  data->list = data->decimal == u"," ? u";" : u",";
  return data;
}

// The data of the user's locale, read from ICU at its first use.
const LocaleData& userLocale() {
  const std::string name = userLocaleName();
  std::lock_guard lock(state().mutex);
  std::unique_ptr<LocaleData>& data = state().locales[name];
  if (!data) data = loadLocale(name);
  return *data;
}

bool isUserLocale(LCID locale) { return locale == LOCALE_USER_DEFAULT || locale == LOCALE_SYSTEM_DEFAULT; }

SYSTEMTIME localNow() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  const auto word = [](int value) { return static_cast<WORD>(value); };
  return SYSTEMTIME{word(local.tm_year + 1900), word(local.tm_mon + 1), word(local.tm_wday), word(local.tm_mday),
                    word(local.tm_hour),        word(local.tm_min),     word(local.tm_sec),  0};
}

bool validDate(const SYSTEMTIME& time) {
  if (time.wYear < 1601 || time.wYear > 30827 || time.wMonth < 1 || time.wMonth > 12 || time.wDay < 1) return false;
  const std::chrono::year_month_day date{std::chrono::year{time.wYear}, std::chrono::month{time.wMonth},
                                         std::chrono::day{time.wDay}};
  return date.ok();
}

bool validTime(const SYSTEMTIME& time) {
  return time.wHour < 24 && time.wMinute < 60 && time.wSecond < 60 && time.wMilliseconds < 1000;
}

// Copies `value` with its terminator into `out` of `size` units (size 0:
// only the units needed), as the platform's locale functions do.
int writeOut(const u16string& value, LPWSTR out, int size) {
  const int needed = static_cast<int>(value.size()) + 1;
  if (size == 0) return needed;
  if (!out || size < needed) return fail(ERROR_INSUFFICIENT_BUFFER);
  value.copy(out, value.size());
  out[value.size()] = u'\0';
  return needed;
}

bool badBuffer(LPWSTR out, int size) { return size < 0 || (size > 0 && !out); }

}  // namespace

int GetDateFormatW(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCWSTR picture, LPWSTR out, int size) {
  if (const auto fault = takeFault(state().dateFault)) return fail(*fault);
  if (!isUserLocale(locale) || badBuffer(out, size)) return fail(ERROR_INVALID_PARAMETER);
  if ((flags & ~DATE_SHORTDATE) != 0 || (flags && picture)) return fail(ERROR_INVALID_FLAGS);
  const SYSTEMTIME when = time ? *time : localNow();
  if (!validDate(when)) return fail(ERROR_INVALID_PARAMETER);
  const LocaleData& data = userLocale();
  return writeOut(FormatPicture(picture ? picture : data.shortDate, PictureKind::Date, when, data.names), out, size);
}

int GetTimeFormatW(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCWSTR picture, LPWSTR out, int size) {
  if (const auto fault = takeFault(state().timeFault)) return fail(*fault);
  if (!isUserLocale(locale) || badBuffer(out, size)) return fail(ERROR_INVALID_PARAMETER);
  if (flags != 0) return fail(ERROR_INVALID_FLAGS);
  const SYSTEMTIME when = time ? *time : localNow();
  if (!validTime(when)) return fail(ERROR_INVALID_PARAMETER);
  const LocaleData& data = userLocale();
  return writeOut(FormatPicture(picture ? picture : data.timeFormat, PictureKind::Time, when, data.names), out, size);
}

int GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR out, int size) {
  if (const auto fault = takeFault(state().infoFault)) return fail(*fault);
  if (!isUserLocale(locale) || badBuffer(out, size)) return fail(ERROR_INVALID_PARAMETER);
  const LocaleData& data = userLocale();
  switch (type) {
    case LOCALE_SLIST:
      return writeOut(data.list, out, size);
    case LOCALE_SDECIMAL:
      return writeOut(data.decimal, out, size);
    case LOCALE_SSHORTDATE:
      return writeOut(data.shortDate, out, size);
    case LOCALE_STIMEFORMAT:
      return writeOut(data.timeFormat, out, size);
    case LOCALE_S1159:
      return writeOut(data.names.am, out, size);
    case LOCALE_S2359:
      return writeOut(data.names.pm, out, size);
    default:
      return fail(ERROR_INVALID_FLAGS);
  }
}

namespace win_testing {

void failNextGetDateFormat(DWORD error) noexcept {
  std::lock_guard lock(state().mutex);
  state().dateFault = error;
}

void failNextGetTimeFormat(DWORD error) noexcept {
  std::lock_guard lock(state().mutex);
  state().timeFault = error;
}

void failNextGetLocaleInfo(DWORD error) noexcept {
  std::lock_guard lock(state().mutex);
  state().infoFault = error;
}

}  // namespace win_testing
