// The settings file "App.config" with 10,000 properties in one Setting:
// load, one getSetting (the last property), one setSetting (the middle one),
// save; and getSetting alone on the loaded document. Each beside a floor that
// does the same work directly with pugixml: parse, a linear walk comparing
// names, set the attribute, write beside and rename over with an fsync.
#include <benchmark/benchmark.h>

#include <pugixml.hpp>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "com/ComApartment.h"
#include "ohmutils/config/OhmCfgXML.h"
#include "win/fs/PathMapping.h"
#include "zd/app/GblPm.h"

namespace {

constexpr int kProperties = 10000;

const std::filesystem::path& benchFolder() {
  static const std::filesystem::path folder = [] {
    std::string pattern = (std::filesystem::temp_directory_path() / "ohm_bench_XXXXXX").string();
    if (!::mkdtemp(pattern.data())) std::abort();
    return std::filesystem::path(pattern);
  }();
  return folder;
}

std::string configPath() { return (benchFolder() / "App.config").string(); }

void writeConfig() {
  std::ofstream out(configPath());
  out << "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Settings>\n"
         "  <Setting Name=\"AuditSettings\"><Property Name=\"a\" Value=\"b\"/></Setting>\n"
         "  <Setting Name=\"SchSortOrder\">\n";
  for (int i = 0; i < kProperties; ++i) out << "    <Property Name=\"Prop" << i << "\" Value=\"Value " << i << "\"/>\n";
  out << "  </Setting>\n</Settings>\n";
}

// COM on the benchmark thread, the folder in the global value, a fresh file.
OhmCfgXML& prepare() {
  static bool once = [] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    GblPm_SetGblValue(u"GBL_wd_DocSetBase", (PosixPathToWindows(benchFolder().string()) + u"\\").c_str());
    return true;
  }();
  (void)once;
  writeConfig();
  return OhmCfgXML::GetInstance();
}

const char16_t* const kLast = u"Prop9999";
const char16_t* const kMiddle = u"Prop5000";

void BM_AppConfigCycle(benchmark::State& state) {
  OhmCfgXML& config = prepare();
  for (auto _ : state) {
    if (!config.loadCfgXML()) state.SkipWithError("load failed");
    benchmark::DoNotOptimize(config.getSetting(ConfigurationXML::SchSortOrder, kLast));
    config.setSetting(CString(u"changed"), ConfigurationXML::SchSortOrder, kMiddle);
    config.saveCfgXML();
  }
}

void BM_AppConfigGetSetting(benchmark::State& state) {
  OhmCfgXML& config = prepare();
  if (!config.loadCfgXML()) state.SkipWithError("load failed");
  for (auto _ : state) benchmark::DoNotOptimize(config.getSetting(ConfigurationXML::SchSortOrder, kLast));
  config.saveCfgXML();
}

// --- floor: pugixml directly ----------------------------------------------

pugi::xml_node floorFind(pugi::xml_node parent, const char* element, const char* name) {
  for (pugi::xml_node node : parent.children(element))
    if (std::strcmp(node.attribute("Name").value(), name) == 0) return node;
  return {};
}

std::string floorGet(const pugi::xml_document& doc, const char* property) {
  pugi::xml_node setting = floorFind(doc.child("Settings"), "Setting", "SchSortOrder");
  return floorFind(setting, "Property", property).attribute("Value").value();
}

void floorSave(const pugi::xml_document& doc, const std::string& path) {
  std::string temporary = path + ".~floor";
  doc.save_file(temporary.c_str(), "\t", pugi::format_indent | pugi::format_no_declaration);
  int fd = ::open(temporary.c_str(), O_RDONLY);
  ::fsync(fd);
  ::close(fd);
  std::rename(temporary.c_str(), path.c_str());
}

constexpr unsigned kFloorParse = pugi::parse_default | pugi::parse_declaration | pugi::parse_comments;

void BM_AppConfigCycleFloor(benchmark::State& state) {
  prepare();
  for (auto _ : state) {
    pugi::xml_document doc;
    if (!doc.load_file(configPath().c_str(), kFloorParse)) state.SkipWithError("load failed");
    benchmark::DoNotOptimize(floorGet(doc, "Prop9999"));
    pugi::xml_node setting = floorFind(doc.child("Settings"), "Setting", "SchSortOrder");
    floorFind(setting, "Property", "Prop5000").attribute("Value").set_value("changed");
    floorSave(doc, configPath());
  }
}

void BM_AppConfigGetSettingFloor(benchmark::State& state) {
  prepare();
  pugi::xml_document doc;
  doc.load_file(configPath().c_str(), kFloorParse);
  for (auto _ : state) benchmark::DoNotOptimize(floorGet(doc, "Prop9999"));
}

BENCHMARK(BM_AppConfigCycle)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AppConfigCycleFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AppConfigGetSetting)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_AppConfigGetSettingFloor)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
