// Reading a large drawing file: 50,000 block references, each with two
// attributes and an option record in xdata, written once with dxfOut (2018,
// UTF-8). The floor beside it only reads the same file's bytes, the least
// any reader must do; all report bytes per second. Freeing the drawing is
// timed apart from reading it.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include <filesystem>
#include <string>

#include "win/Utf8.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

constexpr int kReferences = 50'000;

// The drawing file, made on first use and removed at exit.
const std::string& drawingPath() {
  static const std::string path = [] {
    ZdDbDatabase db;
    ZdDbDrawingBuilder build(db);
    for (int i = 0; i < kReferences; ++i) {
      const std::u16string number = Utf8ToUtf16(std::to_string(i));
      ZdDbBlockReference* reference =
          build.insertBlock(i % 2 ? u"HCR1" : u"HPB11", {{u"TAG1", u"-K" + number}, {u"DESC1", u"Schütz " + number}});
      ZdDbDrawingBuilder::setOptionXData(*reference, u"KVA_WD_FP", number);
    }
    const std::string file = (std::filesystem::temp_directory_path() / "ohm_dxf_read_bench.dxf").string();
    if (db.dxfOut(Utf8ToUtf16(file).c_str(), u"AC1032") != Zeda::eOk) return std::string();
    return file;
  }();
  static const struct Remover {
    ~Remover() { std::filesystem::remove(path); }
  } remover;
  return path;
}

std::int64_t fileSize() { return static_cast<std::int64_t>(std::filesystem::file_size(drawingPath())); }

// The heap in use, as glibc counts it: small blocks and mapped large ones.
std::int64_t heapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
}

// A read into a fresh database each time; freeing it is timed apart
// (BM_FreeDrawing). "memory_x_file" is the heap the read drawing holds,
// against the file's size.
void BM_ReadDwgFile(benchmark::State& state) {
  if (drawingPath().empty()) return state.SkipWithError("the drawing could not be written");
  const std::u16string name = Utf8ToUtf16(drawingPath());
  std::int64_t held = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto db = std::make_unique<ZdDbDatabase>();
    const std::int64_t before = heapInUse();
    state.ResumeTiming();
    if (db->readDwgFile(name.c_str()) != Zeda::eOk) return state.SkipWithError("the drawing did not read");
    state.PauseTiming();
    held = std::max(held, heapInUse() - before);
    const auto* model = static_cast<const ZdDbBlockTableRecord*>(db->objectAt(db->modelSpaceId()));
    if (model->entityIds().size() != kReferences) return state.SkipWithError("the drawing read is not the one written");
    db.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * fileSize());
  state.counters["memory_x_file"] = static_cast<double>(held) / static_cast<double>(fileSize());
}

// Freeing a database that holds the drawing.
void BM_FreeDrawing(benchmark::State& state) {
  if (drawingPath().empty()) return state.SkipWithError("the drawing could not be written");
  const std::u16string name = Utf8ToUtf16(drawingPath());
  for (auto _ : state) {
    state.PauseTiming();
    auto db = std::make_unique<ZdDbDatabase>();
    if (db->readDwgFile(name.c_str()) != Zeda::eOk) return state.SkipWithError("the drawing did not read");
    state.ResumeTiming();
    db.reset();
  }
  state.SetBytesProcessed(state.iterations() * fileSize());
}

// Floor: the file's bytes into one string, as the reader gets them first.
void BM_ReadFileBytesFloor(benchmark::State& state) {
  if (drawingPath().empty()) return state.SkipWithError("the drawing could not be written");
  for (auto _ : state) {
    std::string bytes;
    const int fd = ::open(drawingPath().c_str(), O_RDONLY | O_CLOEXEC);
    char buffer[1 << 16];
    for (ssize_t count; (count = ::read(fd, buffer, sizeof buffer)) > 0;)
      bytes.append(buffer, static_cast<std::size_t>(count));
    ::close(fd);
    benchmark::DoNotOptimize(bytes.data());
  }
  state.SetBytesProcessed(state.iterations() * fileSize());
}

BENCHMARK(BM_ReadDwgFile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadFileBytesFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FreeDrawing)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
