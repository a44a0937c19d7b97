// Fuzz target of the whole drawing reader: any bytes must give a status,
// never a crash, a hang or a leak, plainly and in recover mode; a drawing
// that reads (or is repaired) must also write, and what is written must read
// again without repairs.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "zd/db/ZdDbDatabase.h"
#include "zd/dxf/DxfDrawingReader.h"
#include "zd/dxf/DxfDrawingWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  ZdDbDatabase database;
  if (readDxfDrawing(text, database) != Zeda::eOk && readDxfDrawing(text, database, {true}) != Zeda::eOk) return 0;
  for (const std::string_view version : {"AC1009", "AC1015", "AC1032"}) {
    std::string written;
    ZdDbDatabase again;
    if (writeDxfDrawing(database, version, written) != Zeda::eOk) std::abort();
    DxfReadReport report;
    if (readDxfDrawing(written, again, {}, &report) != Zeda::eOk) {
      std::fprintf(stderr, "written as %s, it reads no more: %d: %s\n", std::string(version).c_str(), report.line,
                   report.problem.c_str());
      std::abort();
    }
  }
  return 0;
}
