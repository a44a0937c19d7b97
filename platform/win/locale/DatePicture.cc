#include "win/locale/DatePicture.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

using std::u16string;
using std::u16string_view;

u16string number(int value, int width) {
  u16string digits;
  for (int rest = value; rest > 0 || digits.empty(); rest /= 10)
    digits.insert(digits.begin(), static_cast<char16_t>(u'0' + rest % 10));
  const auto wanted = static_cast<std::size_t>(width);
  if (digits.size() < wanted) digits.insert(0, wanted - digits.size(), u'0');
  return digits;
}

// The length of the run of `text[at]` that starts at `at`.
std::size_t runLength(u16string_view text, std::size_t at) {
  std::size_t end = at;
  while (end < text.size() && text[end] == text[at]) ++end;
  return end - at;
}

// A quoted section starting at the quote `at`: its text ('' inside is one
// quote) and the position behind the closing quote (or the end).
std::pair<u16string, std::size_t> quoted(u16string_view text, std::size_t at) {
  u16string literal;
  std::size_t i = at + 1;
  for (; i < text.size(); ++i) {
    if (text[i] != u'\'') {
      literal += text[i];
    } else if (i + 1 < text.size() && text[i + 1] == u'\'') {
      literal += u'\'';
      ++i;
    } else {
      return {literal, i + 1};
    }
  }
  return {literal, i};
}

u16string dateField(char16_t letter, std::size_t count, const SYSTEMTIME& time, const LocaleNames& names) {
  const int dayOfWeek = DayOfWeek(time.wYear, time.wMonth, time.wDay);
  switch (letter) {
    case u'd':
      if (count >= 3) return count == 3 ? names.shortDays[dayOfWeek] : names.days[dayOfWeek];
      return number(time.wDay, static_cast<int>(count));
    case u'M':
      if (count >= 3) return count == 3 ? names.shortMonths[time.wMonth - 1] : names.months[time.wMonth - 1];
      return number(time.wMonth, static_cast<int>(count));
    case u'y':
      return count >= 3 ? number(time.wYear, 4) : number(time.wYear % 100, static_cast<int>(count));
    default:  // 'g'
      return names.era;
  }
}

u16string timeField(char16_t letter, std::size_t count, const SYSTEMTIME& time, const LocaleNames& names) {
  const int width = std::min<int>(static_cast<int>(count), 2);
  switch (letter) {
    case u'h':
      return number(time.wHour % 12 == 0 ? 12 : time.wHour % 12, width);
    case u'H':
      return number(time.wHour, width);
    case u'm':
      return number(time.wMinute, width);
    case u's':
      return number(time.wSecond, width);
    default: {  // 't'
      const u16string& marker = time.wHour < 12 ? names.am : names.pm;
      return count == 1 ? marker.substr(0, 1) : marker;
    }
  }
}

// The Windows field for a run of one ICU pattern letter; empty to drop it.
u16string pictureField(char16_t letter, std::size_t count) {
  const std::size_t two = std::min<std::size_t>(count, 2);
  switch (letter) {
    case u'y':
    case u'Y':
    case u'u':
    case u'U':
    case u'r':
      return u"yyyy";
    case u'M':
    case u'L':
      return u16string(std::min<std::size_t>(count, 4), u'M');
    case u'd':
      return u16string(two, u'd');
    case u'E':
    case u'c':
    case u'e':
      return count >= 4 ? u"dddd" : u"ddd";
    case u'G':
      return u"gg";
    case u'h':
    case u'K':
      return u16string(two, u'h');
    case u'H':
    case u'k':
      return u16string(two, u'H');
    case u'm':
    case u's':
      return u16string(two, letter);
    case u'a':
    case u'b':
    case u'B':
      return u"tt";
    default:
      return u"";
  }
}

bool isAsciiLetter(char16_t unit) { return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z'); }

u16string requoted(const u16string& literal) {
  u16string text = u"'";
  for (char16_t unit : literal) text += unit == u'\'' ? u"''" : u16string(1, unit);
  return text + u"'";
}

}  // namespace

int DayOfWeek(int year, int month, int day) {
  using namespace std::chrono;
  const sys_days date = std::chrono::year{year} / std::chrono::month{static_cast<unsigned>(month)} /
                        std::chrono::day{static_cast<unsigned>(day)};
  return static_cast<int>(weekday{date}.c_encoding());
}

std::u16string FormatPicture(std::u16string_view picture, PictureKind kind, const SYSTEMTIME& time,
                             const LocaleNames& names) {
  const u16string_view letters = kind == PictureKind::Date ? u"dMyg" : u"hHmst";
  u16string text;
  for (std::size_t i = 0; i < picture.size();) {
    if (picture.substr(i, 2) == u"''") {  // outside quotes too, '' is one quote
      text += u'\'';
      i += 2;
    } else if (picture[i] == u'\'') {
      auto [literal, next] = quoted(picture, i);
      text += literal;
      i = next;
    } else if (letters.find(picture[i]) != u16string_view::npos) {
      const std::size_t count = runLength(picture, i);
      text += kind == PictureKind::Date ? dateField(picture[i], count, time, names)
                                        : timeField(picture[i], count, time, names);
      i += count;
    } else {
      text += picture[i++];
    }
  }
  return text;
}

std::u16string PictureFromIcuPattern(std::u16string_view pattern) {
  u16string picture;
  for (std::size_t i = 0; i < pattern.size();) {
    if (pattern.substr(i, 2) == u"''") {
      picture += u"''";
      i += 2;
    } else if (pattern[i] == u'\'') {
      auto [literal, next] = quoted(pattern, i);
      picture += requoted(literal);
      i = next;
    } else if (isAsciiLetter(pattern[i])) {
      const std::size_t count = runLength(pattern, i);
      picture += pictureField(pattern[i], count);
      i += count;
    } else {
      picture += pattern[i] == u'\u202F' ? u' ' : pattern[i];
      ++i;
    }
  }
  return picture;
}
