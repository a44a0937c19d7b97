// Fuzz target of the tag layer: any bytes must give tags or a fault, never a
// crash, a hang or a leak; every value decodes and encodes again.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "zd/dxf/DxfTags.h"
#include "zd/dxf/DxfTextCodec.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  DxfTagReader reader(text);
  DxfTag first, tag;
  if (!reader.next(first)) return 0;
  // Decode every value under the first tag's idea of version and the code page the second names.
  std::string_view codePage = "ANSI_1252";
  if (reader.next(tag)) codePage = tag.value;
  const auto codec = DxfTextCodec::forDrawing(first.value, codePage);
  if (!codec) return 0;
  do codec->encode(codec->decode(tag.value));
  while (reader.next(tag));
  return 0;
}
