// CString::Format: the C runtime's wide printf, as MFC uses it. Numbers go
// through the narrow snprintf with the same flags, width and precision; text
// conversions are done here because the narrow printf knows no UTF-16.
#include <cstdio>
#include <string>

#include "mfc/CString.h"
#include "win/Utf8.h"

namespace {

struct Spec {
  std::string flags;
  int width = -1;
  int precision = -1;
  std::string length;  // "", "h", "hh", "l", "ll", "L", "z", "j", "t", "w", "I64"
  char16_t conversion = 0;
};

bool IsOneOf(char16_t unit, const char* set) {
  for (; *set; ++set)
    if (unit == static_cast<char16_t>(*set)) return true;
  return false;
}

int ReadNumber(const char16_t*& p, va_list& args) {
  if (*p == u'*') {
    ++p;
    return va_arg(args, int);
  }
  int value = 0;
  while (*p >= u'0' && *p <= u'9') value = value * 10 + (*p++ - u'0');
  return value;
}

void ReadLength(const char16_t*& p, Spec& spec) {
  if (p[0] == u'I' && p[1] == u'6' && p[2] == u'4') {
    spec.length = "ll";
    p += 3;
    return;
  }
  while (IsOneOf(*p, "hlLzjtw")) spec.length += static_cast<char>(*p++);
}

// Pads `body` to the field width, left or right as the '-' flag says.
std::u16string Pad(std::u16string body, const Spec& spec) {
  if (spec.width > static_cast<int>(body.size())) {
    const std::u16string fill(static_cast<std::size_t>(spec.width) - body.size(), u' ');
    body = spec.flags.find('-') != std::string::npos ? body + fill : fill + body;
  }
  return body;
}

std::u16string FormatText(const Spec& spec, va_list& args) {
  const bool narrow = spec.length == "h" || spec.conversion == u'S';
  std::u16string text;
  if (narrow) {
    const char* value = va_arg(args, const char*);
    text = Utf8ToUtf16(value ? value : "(null)");
  } else {
    const char16_t* value = va_arg(args, const char16_t*);
    text = value ? value : u"(null)";
  }
  if (spec.precision >= 0 && static_cast<int>(text.size()) > spec.precision) text.resize(spec.precision);
  return Pad(std::move(text), spec);
}

std::u16string FormatUnit(const Spec& spec, va_list& args) {
  const int value = va_arg(args, int);
  const bool narrow = spec.length == "h" || spec.conversion == u'C';
  std::u16string text =
      narrow ? Utf8ToUtf16(std::string(1, static_cast<char>(value))) : std::u16string(1, static_cast<char16_t>(value));
  return Pad(std::move(text), spec);
}

template <typename T>
std::u16string Narrow(const Spec& spec, const std::string& lengthMod, T value) {
  std::string format = "%";
  format += spec.flags;
  if (spec.width >= 0) format += std::to_string(spec.width);
  if (spec.precision >= 0) {
    format += '.';
    format += std::to_string(spec.precision);
  }
  format += lengthMod;
  format += static_cast<char>(spec.conversion);
  const int size = std::snprintf(nullptr, 0, format.c_str(), value);
  std::string out(static_cast<std::size_t>(size > 0 ? size : 0), '\0');
  std::snprintf(out.data(), out.size() + 1, format.c_str(), value);
  return Utf8ToUtf16(out);
}

std::u16string FormatInteger(const Spec& spec, va_list& args) {
  const bool isSigned = IsOneOf(spec.conversion, "di");
  const std::string& l = spec.length;
  // Windows' long is 32 bits: "l" takes a LONG, like no modifier at all.
  if (l == "ll" || l == "j" || l == "z" || l == "t") {
    return isSigned ? Narrow(spec, "ll", static_cast<long long>(va_arg(args, long long)))
                    : Narrow(spec, "ll", static_cast<unsigned long long>(va_arg(args, unsigned long long)));
  }
  return isSigned ? Narrow(spec, "", va_arg(args, int)) : Narrow(spec, "", va_arg(args, unsigned int));
}

std::u16string FormatOne(const Spec& spec, va_list& args) {
  switch (spec.conversion) {
    case u's':
    case u'S':
      return FormatText(spec, args);
    case u'c':
    case u'C':
      return FormatUnit(spec, args);
    case u'd':
    case u'i':
    case u'u':
    case u'o':
    case u'x':
    case u'X':
      return FormatInteger(spec, args);
    case u'p':
      return Narrow(spec, "", va_arg(args, void*));
    case u'f':
    case u'F':
    case u'e':
    case u'E':
    case u'g':
    case u'G':
    case u'a':
    case u'A':
      return spec.length == "L" ? Narrow(spec, "L", va_arg(args, long double)) : Narrow(spec, "", va_arg(args, double));
    default:
      return {};
  }
}

}  // namespace

void CString::FormatV(LPCWSTR format, va_list args) {
  std::u16string out;
  va_list ap;
  va_copy(ap, args);
  for (const char16_t* p = format ? format : u""; *p;) {
    if (*p != u'%') {
      out += *p++;
      continue;
    }
    ++p;
    if (*p == u'%') {
      out += *p++;
      continue;
    }
    Spec spec;
    while (IsOneOf(*p, "-+ #0")) spec.flags += static_cast<char>(*p++);
    if (*p == u'*' || (*p >= u'0' && *p <= u'9')) spec.width = ReadNumber(p, ap);
    if (spec.width < -1) {  // a negative '*' width means left-justified
      spec.flags += '-';
      spec.width = -spec.width;
    }
    if (*p == u'.') {
      ++p;
      spec.precision = ReadNumber(p, ap);
    }
    ReadLength(p, spec);
    if (!*p) break;
    spec.conversion = *p++;
    out += FormatOne(spec, ap);
  }
  va_end(ap);
  m_str.swap(out);
}

void CString::Format(LPCWSTR format, ...) {
  va_list args;
  va_start(args, format);
  FormatV(format, args);
  va_end(args);
}
