// The project update on a large project: 500 drawings of 1,000 block
// references each (coils, contacts, wire numbers, terminals), written once
// into a temporary folder. Beside the update's dry run stands its floor,
// reading the same drawings alone into databases that are dropped; both on
// 1 and 2 workers. "peak_x_largest" is the peak memory of a process that
// does the dry run (and of one that does nothing, subtracted), against the
// largest drawing's size; "records_x_largest" the resident memory its result
// holds (component records and plan), and "peak_less_records_x_largest" the
// rest, which the drawings being read account for. Both are resident pages,
// so that the difference means something: heap that is allocated but never
// touched (reserved capacity) counts in neither. OHM_BENCH_DRAWINGS makes the
// project smaller.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "FreshProcess.h"
#include "project/ProjectUpdate.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/dxf/DxfDrawingReader.h"

namespace {

namespace fs = std::filesystem;

constexpr int kReferences = 1000;

int DrawingCount() {
  const char* given = std::getenv("OHM_BENCH_DRAWINGS");
  return given ? std::max(1, std::atoi(given)) : 500;
}

void Group(std::string& text, const char* code, const std::string& value) {
  text += code;
  text += '\n';
  text += value;
  text += '\n';
}

void Insert(std::string& text, unsigned& handle, const char* block, double y,
            const std::vector<std::pair<std::string, std::string>>& attributes) {
  char hex[24];
  auto next = [&] { return std::snprintf(hex, sizeof hex, "%X", handle++), std::string(hex); };
  Group(text, "  0", "INSERT"), Group(text, "  5", next()), Group(text, "  8", "0"), Group(text, " 66", "1");
  Group(text, "  2", block), Group(text, " 10", "10.0"), Group(text, " 20", std::to_string(y)),
      Group(text, " 30", "0.0");
  for (const auto& [tag, value] : attributes) {
    Group(text, "  0", "ATTRIB"), Group(text, "  5", next()), Group(text, "  8", "0"), Group(text, " 10", "10.0");
    Group(text, " 20", std::to_string(y)), Group(text, " 40", "2.5"), Group(text, "  1", value),
        Group(text, "  2", tag);
  }
  Group(text, "  0", "SEQEND"), Group(text, "  5", next()), Group(text, "  8", "0");
}

// The tag of the coil at `index` of drawing `drawing`: "K12_340".
std::string CoilTag(int drawing, int index) {
  char tag[32];
  std::snprintf(tag, sizeof tag, "K%d_%d", drawing, index);
  return tag;
}

// One drawing: a tenth coils, four tenths contacts of coils anywhere in the
// project, three tenths wire numbers, two tenths terminals.
std::string Drawing(int index, int drawings, std::mt19937& random) {
  std::string text;
  Group(text, "  0", "SECTION"), Group(text, "  2", "HEADER"), Group(text, "  9", "$ACADVER"),
      Group(text, "  1", "AC1009");
  Group(text, "  0", "ENDSEC"), Group(text, "  0", "SECTION"), Group(text, "  2", "BLOCKS");
  for (const char* block : {"HCR1", "HNO1", "HNC1", "HNONC1", "HWIRENO", "HT0001"}) {
    Group(text, "  0", "BLOCK"), Group(text, "  2", block), Group(text, " 70", "2"), Group(text, "  0", "ENDBLK");
  }
  Group(text, "  0", "ENDSEC"), Group(text, "  0", "SECTION"), Group(text, "  2", "ENTITIES");
  unsigned handle = 0x100;
  const char* kinds[] = {"HNO1", "HNC1", "HNONC1"};
  for (int i = 0; i < kReferences; ++i) {
    const double y = -(i % 40) - 0.5;
    const int slot = i % 10;
    if (slot == 0) {
      Insert(text, handle, "HCR1", y, {{"TAG1", CoilTag(index, i)}, {"XREF", ""}, {"XREFNO", ""}, {"XREFNC", ""}});
    } else if (slot <= 4) {
      const int other = static_cast<int>(random() % static_cast<unsigned>(drawings));
      const std::string coil = CoilTag(other, static_cast<int>(random() % 100) * 10);
      Insert(text, handle, kinds[random() % 3], y,
             {{"TAG2", coil}, {"TERM01", "13"}, {"TERM02", "14"}, {"TERM03", "12"}});
    } else if (slot <= 7) {
      Insert(text, handle, "HWIRENO", y, {{"WIRENO", std::to_string(index * kReferences + i)}});
    } else {
      Insert(text, handle, "HT0001", y, {{"TAGSTRIP", "X1"}, {"TERM", std::to_string(i)}});
    }
  }
  Group(text, "  0", "ENDSEC"), Group(text, "  0", "EOF");
  return text;
}

// The project's folder, written on first use and removed at exit.
const ProjectDescription& Project() {
  static const fs::path folder = [] {
    std::string pattern = (fs::temp_directory_path() / "ohm-project-bench-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) return fs::path();
    std::mt19937 random(42);
    const int drawings = DrawingCount();
    for (int d = 0; d < drawings; ++d) {
      char name[32];
      std::snprintf(name, sizeof name, "S%04d.dxf", d);
      std::ofstream(fs::path(pattern) / name, std::ios::binary) << Drawing(d, drawings, random);
    }
    return fs::path(pattern);
  }();
  static const struct Remover {
    ~Remover() {
      std::error_code ignored;
      fs::remove_all(folder, ignored);
    }
  } remover;
  static const ProjectDescription project = DescribeFolder(folder.string());
  return project;
}

std::int64_t ProjectBytes() {
  std::int64_t bytes = 0;
  for (const std::string& drawing : Project().drawings) bytes += static_cast<std::int64_t>(fs::file_size(drawing));
  return bytes;
}

// The floor: every drawing read into a database that is then dropped, `workers` at a time.
void BM_ProjectReadDrawings(benchmark::State& state) {
  const ProjectDescription& project = Project();
  const auto workers = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    std::atomic<std::size_t> next{0};
    auto work = [&] {
      for (std::size_t i = next++; i < project.drawings.size(); i = next++) {
        ZdDbDatabase database;
        benchmark::DoNotOptimize(readDxfDrawingFile(project.drawings[i], database));
      }
    };
    std::vector<std::thread> threads;
    for (std::size_t w = 1; w < workers; ++w) threads.emplace_back(work);
    work();
    for (std::thread& thread : threads) thread.join();
  }
  state.SetBytesProcessed(state.iterations() * ProjectBytes());
}

// What a fresh process that runs the update shows of its memory: its peak
// (less that of one that only starts) and the resident memory that the
// update's result holds when it returns, the component records and the plan.
struct UpdateMemory {
  double peakBytes = 0;
  double resultBytes = 0;
};

constexpr const char* kMeasureVariable = "OHM_BENCH_MEASURE_UPDATE";  // "WORKERS FOLDER"; "" for the idle run

// In the fresh process: runs the update, prints its peak and the resident
// memory its result holds, once what the drawings took is handed back to the
// system (every arena trimmed).
int MeasureInThisProcess(const std::string& request) {
  long held = 0;
  if (!request.empty()) {
    const std::size_t space = request.find(' ');
    UpdateOptions options;
    options.workers = static_cast<unsigned>(std::atoi(request.substr(0, space).c_str()));
    const ProjectDescription project = DescribeFolder(request.substr(space + 1));
    ::malloc_trim(0);
    const long before = ResidentKilobytes();
    const ProjectUpdateResult result = UpdateProject(project, options);
    benchmark::DoNotOptimize(result);
    ::malloc_trim(0);
    held = std::max(0L, ResidentKilobytes() - before) * 1024;
  }
  return std::printf("%ld %ld\n", HighWaterKilobytes(), held) < 0;
}

std::pair<double, double> RunMeasuringProcess(const std::string& request) {
  double peakKilobytes = 0, held = 0;
  if (std::sscanf(RunSelf(kMeasureVariable, request).c_str(), "%lf %lf", &peakKilobytes, &held) != 2) return {0, 0};
  return {peakKilobytes * 1024.0, held};
}

UpdateMemory MeasureUpdateMemory(const std::string& folder, unsigned workers) {
  const auto [peak, held] = RunMeasuringProcess(std::to_string(workers) + " " + folder);
  return {peak - RunMeasuringProcess("").first, held};
}

void BM_ProjectUpdateDryRun(benchmark::State& state) {
  const ProjectDescription& project = Project();
  UpdateOptions options;
  options.workers = static_cast<unsigned>(state.range(0));
  std::size_t changes = 0;
  for (auto _ : state) changes = UpdateProject(project, options).plan.changes.size();
  state.SetBytesProcessed(state.iterations() * ProjectBytes());
  std::int64_t largest = 0;
  for (const std::string& drawing : project.drawings) {
    largest = std::max(largest, static_cast<std::int64_t>(fs::file_size(drawing)));
  }
  const UpdateMemory memory = MeasureUpdateMemory(project.root, options.workers);
  const auto size = static_cast<double>(largest);
  state.counters["changes"] = static_cast<double>(changes);
  state.counters["peak_x_largest"] = memory.peakBytes / size;
  state.counters["records_x_largest"] = memory.resultBytes / size;
  state.counters["peak_less_records_x_largest"] = (memory.peakBytes - memory.resultBytes) / size;
}

BENCHMARK(BM_ProjectReadDrawings)->ArgName("workers")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ProjectUpdateDryRun)->ArgName("workers")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
  if (const char* request = std::getenv(kMeasureVariable)) return MeasureInThisProcess(request);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
