#include "zd/dxf/DxfTextCodec.h"

#include <unicode/ucnv.h>
#include <unicode/uniset.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <mutex>

#include "win/Utf8.h"

// A code page converter and the set of characters it maps both ways. ICU
// converters are not thread-safe, so conversions go through a lock.
struct DxfTextCodec::Converter {
  UConverter* converter = nullptr;
  icu::UnicodeSet mappable;
  mutable std::mutex mutex;
  ~Converter() { ucnv_close(converter); }
};

namespace {

// The ICU name of a DXF code page: "ANSI_1252" -> "windows-1252", "DOS850" -> "ibm-850".
std::string icuName(std::string_view codePage) {
  if (codePage.substr(0, 5) == "ANSI_") return "windows-" + std::string(codePage.substr(5));
  if (codePage.substr(0, 3) == "DOS") return "ibm-" + std::string(codePage.substr(3));
  return std::string(codePage);
}

bool isHex(char16_t unit) {
  return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') || (unit >= u'a' && unit <= u'f');
}

// Replaces each "\U+XXXX" by its unit.
std::u16string expandEscapes(std::u16string text) {
  std::size_t at = text.find(u"\\U+");
  while (at != std::u16string::npos) {
    if (at + 7 <= text.size() && isHex(text[at + 3]) && isHex(text[at + 4]) && isHex(text[at + 5]) &&
        isHex(text[at + 6])) {
      const char16_t unit =
          static_cast<char16_t>(std::stoi(std::string(text.begin() + at + 3, text.begin() + at + 7), nullptr, 16));
      text.replace(at, 7, 1, unit);
    }
    at = text.find(u"\\U+", at + 1);
  }
  return text;
}

std::string escape(char16_t unit) {
  char buffer[8];
  std::snprintf(buffer, sizeof buffer, "\\U+%04X", static_cast<unsigned>(unit));
  return buffer;
}

}  // namespace

DxfTextCodec::DxfTextCodec(std::string codePage, std::shared_ptr<const Converter> converter)
    : mCodePage(std::move(codePage)), mConverter(std::move(converter)) {}

DxfTextCodec DxfTextCodec::utf8() { return DxfTextCodec("", nullptr); }

std::optional<DxfTextCodec> DxfTextCodec::forDrawing(std::string_view acadVersion, std::string_view codePage) {
  // AC1021 and later: UTF-8. The version strings compare in order as text.
  if (acadVersion.size() == 6 && acadVersion.substr(0, 2) == "AC" && acadVersion >= "AC1021") return utf8();
  const std::string page = codePage.empty() ? "ANSI_1252" : std::string(codePage);
  auto converter = std::make_shared<Converter>();
  UErrorCode status = U_ZERO_ERROR;
  converter->converter = ucnv_open(icuName(page).c_str(), &status);
  if (U_FAILURE(status)) return std::nullopt;
  // Converters are shared by ICU's own name of their code page, so the set
  // of what each maps is made once; there are only so many code pages.
  static std::mutex mutex;
  static std::map<std::string, std::shared_ptr<const Converter>> known;
  const std::string name = ucnv_getName(converter->converter, &status);
  if (U_FAILURE(status)) return std::nullopt;
  std::lock_guard lock(mutex);
  if (const auto found = known.find(name); found != known.end()) return DxfTextCodec(page, found->second);
  ucnv_getUnicodeSet(converter->converter, converter->mappable.toUSet(), UCNV_ROUNDTRIP_SET, &status);
  if (U_FAILURE(status)) return std::nullopt;
  known.emplace(name, converter);
  return DxfTextCodec(page, std::move(converter));
}

std::u16string DxfTextCodec::decode(std::string_view raw) const {
  // Plain ASCII without escapes reads the same in every code page DXF names.
  if (std::all_of(raw.begin(), raw.end(), [](char c) { return c > 0 && c < 0x7F && c != '\\'; }))
    return std::u16string(raw.begin(), raw.end());
  if (!mConverter) return expandEscapes(Utf8ToUtf16(raw));
  std::u16string text(raw.size() * 2 + 1, u'\0');
  UErrorCode status = U_ZERO_ERROR;
  std::lock_guard lock(mConverter->mutex);
  const int32_t length = ucnv_toUChars(mConverter->converter, text.data(), static_cast<int32_t>(text.size()),
                                       raw.data(), static_cast<int32_t>(raw.size()), &status);
  text.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
  return expandEscapes(std::move(text));
}

std::string DxfTextCodec::encode(std::u16string_view text) const {
  if (!mConverter) return Utf16ToUtf8(text);
  std::string out;
  std::lock_guard lock(mConverter->mutex);
  for (const char16_t unit : text) {
    if (!mConverter->mappable.contains(unit)) {
      out += escape(unit);
      continue;
    }
    char bytes[8];
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = ucnv_fromUChars(mConverter->converter, bytes, sizeof bytes, &unit, 1, &status);
    out.append(bytes, U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
  }
  return out;
}
