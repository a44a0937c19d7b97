// The encoding of the text values of one DXF file. Files of version 2007
// ($ACADVER AC1021) and later are UTF-8; older ones are in the code page that
// $DWGCODEPAGE names ("ANSI_1252" and the like), ANSI_1252 when it names
// none. In both, "\U+XXXX" stands for the UTF-16 unit XXXX; writing older
// files puts such escapes in place of what the code page can't hold.
//
// A codec is a value; it may be copied and used from any thread.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

class DxfTextCodec {
 public:
  // The codec of a file with these header values; nullopt for a code page
  // that this build can't convert.
  static std::optional<DxfTextCodec> forDrawing(std::string_view acadVersion, std::string_view codePage);
  // UTF-8 with escapes, the codec of every file written by this build.
  static DxfTextCodec utf8();

  // The text of a raw value; bytes that are not valid in the encoding become U+FFFD.
  std::u16string decode(std::string_view raw) const;
  // The raw value of a text.
  std::string encode(std::u16string_view text) const;
  // The code page name, "" for UTF-8.
  const std::string& codePage() const noexcept { return mCodePage; }

 private:
  struct Converter;
  DxfTextCodec(std::string codePage, std::shared_ptr<const Converter> converter);

  std::string mCodePage;
  std::shared_ptr<const Converter> mConverter;  // null for UTF-8
};

OHM_PLATFORM_API_END
