// The project update on a large project: 500 drawings of 1,000 block
// references each (coils, contacts, wire numbers, terminals), written once
// into a temporary folder. Beside the update's dry run stands its floor,
// reading the same drawings alone into databases that are dropped; both on
// 1 and 2 workers. "peak_x_largest" is the peak memory of a process that
// does the dry run (and of one that does nothing, subtracted), against the
// largest drawing's size. OHM_BENCH_DRAWINGS makes the project smaller.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <thread>

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
      Insert(text, handle, "HCR1", y,
             {{"TAG1", "K" + std::to_string(index) + "_" + std::to_string(i)},
              {"XREF", ""},
              {"XREFNO", ""},
              {"XREFNC", ""}});
    } else if (slot <= 4) {
      const int other = static_cast<int>(random() % static_cast<unsigned>(drawings));
      const std::string coil = "K" + std::to_string(other) + "_" + std::to_string((random() % 100) * 10);
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

// The peak memory of a child process that runs `work`, less that of one that runs nothing.
template <typename Work>
long PeakKilobytes(Work work) {
  auto peakOf = [](auto body) {
    const pid_t child = ::fork();
    if (child == 0) {
      body();
      ::_exit(0);
    }
    int status = 0;
    struct rusage usage {};
    ::wait4(child, &status, 0, &usage);
    return usage.ru_maxrss;
  };
  return peakOf(work) - peakOf([] {});
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
  const long peak = PeakKilobytes([&] { benchmark::DoNotOptimize(UpdateProject(project, options)); });
  state.counters["changes"] = static_cast<double>(changes);
  state.counters["peak_x_largest"] = static_cast<double>(peak) * 1024.0 / static_cast<double>(largest);
}

BENCHMARK(BM_ProjectReadDrawings)->ArgName("workers")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ProjectUpdateDryRun)->ArgName("workers")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
