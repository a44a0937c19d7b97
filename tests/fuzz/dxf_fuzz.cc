// Fuzz target of the drawing file reader: any bytes must give a status, never
// a crash, a hang or a leak.
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "zd/dxf/DxfTags.h"
#include "zd/dxf/DxfTextCodec.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::vector<DxfTag> tags;
  int errorLine = 0;
  if (readDxfTags(text, tags, errorLine) != DxfTagStatus::Ok) return 0;
  // Decode every value under the first tags' idea of version and code page.
  const auto codec = DxfTextCodec::forDrawing(tags.front().value, tags.back().value);
  if (!codec) return 0;
  for (const DxfTag& tag : tags) codec->encode(codec->decode(tag.value));
  return 0;
}
