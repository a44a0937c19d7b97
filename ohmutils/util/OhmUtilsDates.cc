#include "ohmutils/util/OhmUtilsDates.h"

#include <ctime>

#include "win/fs/CrtFind.h"
#include "win/locale/CrtTime.h"

namespace {

constexpr int kTextUnits = 256;
constexpr int kDateOnly = 2;
constexpr int kTimeOnly = 3;

using FormatFunction = int (*)(LCID, DWORD, const SYSTEMTIME*, LPCWSTR, LPWSTR, int);

void formatInto(FormatFunction format, const SYSTEMTIME* time, CString& output, bool append, DWORD flags,
                const char16_t* picture) {
  char16_t buffer[kTextUnits] = {};
  format(LOCALE_USER_DEFAULT, flags, time, picture, buffer, kTextUnits);
  if (append) {
    output += u' ';
    output += buffer;
  } else {
    output = buffer;
  }
}

// The local time of `time` as a time record; false when it can't be converted.
bool localSystemTime(__time64_t time, SYSTEMTIME& result) {
  std::tm local{};
  if (_localtime64_s(&local, &time) != 0) return false;
  result.wYear = static_cast<WORD>(local.tm_year + 1900);
  result.wMonth = static_cast<WORD>(local.tm_mon + 1);
  result.wDayOfWeek = static_cast<WORD>(local.tm_wday);
  result.wDay = static_cast<WORD>(local.tm_mday);
  result.wHour = static_cast<WORD>(local.tm_hour);
  result.wMinute = static_cast<WORD>(local.tm_min);
  result.wSecond = static_cast<WORD>(local.tm_sec);
  result.wMilliseconds = 0;
  return true;
}

void writeLocaleDateTime(const SYSTEMTIME& time, CString& output, int mode) {
  if (mode == kTimeOnly) {
    FormatTime(&time, output, false, 0, nullptr);
    return;
  }
  FormatDate(&time, output, false, DATE_SHORTDATE, nullptr);
  if (mode != kDateOnly) FormatTime(&time, output, true, 0, nullptr);
}

void writeStamp(const SYSTEMTIME& time, CString& stamp) {
  CString date, clock;
  FormatDate(&time, date, false, 0, u"yyyyMMdd");
  FormatTime(&time, clock, false, 0, u"HHmmss");
  stamp = date + clock;
}

// The separator of locale text `type`; `fallback` when it can't be read.
void localeSeparator(LCTYPE type, const char16_t* fallback, CString& output) {
  char16_t buffer[kTextUnits] = {};
  output = GetLocaleInfoW(LOCALE_USER_DEFAULT, type, buffer, kTextUnits) < 1 ? fallback : buffer;
}

}  // namespace

void FormatDate(const SYSTEMTIME* time, CString& output, bool append, DWORD flags, const char16_t* format) {
  formatInto(GetDateFormatW, time, output, append, flags, format);
}

void FormatTime(const SYSTEMTIME* time, CString& output, bool append, DWORD flags, const char16_t* format) {
  formatInto(GetTimeFormatW, time, output, append, flags, format);
}

void GetLocaleDateTime(CString& output) {
  SYSTEMTIME now{};
  if (localSystemTime(_time64(nullptr), now)) writeLocaleDateTime(now, output, 0);
}

void GetFileLocaleDateTime(const char16_t* path, CString& output, int mode, CString* stamp) {
  if (!path || !*path) return;
  _wfinddata64_t entry{};
  const std::intptr_t search = _wfindfirst64(path, &entry);
  if (search == -1) return;
  SYSTEMTIME written{};
  if (localSystemTime(entry.time_write, written)) {
    writeLocaleDateTime(written, output, mode);
    if (stamp) writeStamp(written, *stamp);
  }
  _findclose(search);
}

void GetLocaleDecimalSep(CString& output) { localeSeparator(LOCALE_SDECIMAL, u".", output); }

void GetLocaleListSep(CString& output) { localeSeparator(LOCALE_SLIST, u",", output); }
