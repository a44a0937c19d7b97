// Loading a project file that holds one long string, a contact's name of
// 5 MB and of 50 MB: reading must stay linear, so the 50 MB file may take at
// most 12 times the 5 MB one, and "peak_x_file", the peak memory of a fresh
// process that loads the file (less that of one that loads nothing) against
// the file's size, must stay under 4.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <stdlib.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "FreshProcess.h"
#include "Project.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kLoadVariable = "OHM_BENCH_LOAD_PROJECT";  // the file to load; "" for the idle run

// The project file of `megabytes`, written on first use into a folder removed at exit.
std::string ProjectFile(int megabytes) {
  static const fs::path folder = [] {
    std::string pattern = (fs::temp_directory_path() / "ohm-project-file-bench-XXXXXX").string();
    return ::mkdtemp(pattern.data()) ? fs::path(pattern) : fs::path();
  }();
  static const struct Remover {
    ~Remover() {
      std::error_code ignored;
      fs::remove_all(folder, ignored);
    }
  } remover;
  char name[32];
  std::snprintf(name, sizeof name, "p%d.json", megabytes);
  const fs::path file = folder / name;
  if (!fs::exists(file)) {
    std::ofstream(file, std::ios::binary)
        << R"({"hostDrawing": "C:\\PROJ\\A.DWG", "coils": {"K1": [{"drawing": "C:\\PROJ\\A.DWG", "name": ")"
        << std::string(static_cast<std::size_t>(megabytes) * 1000 * 1000, 'x') << R"("}]}, "entities": []})";
  }
  return file.string();
}

void BM_LoadProjectFile(benchmark::State& state) {
  const std::string file = ProjectFile(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(LoadProject(file));
  const auto size = static_cast<double>(fs::file_size(file));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
  const double peak = std::atof(RunSelf(kLoadVariable, file).c_str());
  const double idle = std::atof(RunSelf(kLoadVariable, "").c_str());
  state.counters["peak_x_file"] = (peak - idle) * 1024.0 / size;
}
BENCHMARK(BM_LoadProjectFile)->ArgName("MB")->Arg(5)->Arg(50)->Unit(benchmark::kMillisecond);

// In the fresh process: loads the file, prints the high-water mark in kilobytes.
int LoadInThisProcess(const std::string& file) {
  if (!file.empty()) benchmark::DoNotOptimize(LoadProject(file));
  return std::printf("%ld\n", HighWaterKilobytes()) < 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (const char* file = std::getenv(kLoadVariable)) return LoadInThisProcess(file);
  // Every load maps its large blocks anew, as the tool's one load does. By
  // default malloc raises its mapping threshold after the first free, so
  // that later 5 MB loads would reuse warm memory while 50 MB ones, above
  // its ceiling, never could.
  ::mallopt(M_MMAP_THRESHOLD, 128 * 1024);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
