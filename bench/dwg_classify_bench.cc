// Classification and the block query on a generated drawing of 50,000 block
// references with attributes and xdata, cycling through all nineteen kinds
// (and some that are none), with the stand-in's iterators (and the block
// query's opens) included. Target: getOhmObjectType under 400 ns per entity on
// average. The floor walks the same entities and reads each one's block
// name and first attribute tag once: the least any classification must touch.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "zd/app/ZdDocManager.h"
#include "zd/db/ZdDbDrawingBuilder.h"
#include "zd/db/ZdDbText.h"

namespace {

struct Sample {
  std::u16string block;
  ZdDbDrawingBuilder::Attributes attributes;
  const char16_t* xdataApp;  // null: none
};

// One sample per kind, in the order of the kind numbers, then two of none.
const std::vector<Sample> kSamples = {
    {u"SW1", {{u"DESC1", u"x"}}, nullptr},
    {u"FP1", {{u"FP", u"1"}, {u"DESC1", u"x"}}, nullptr},
    {u"HCR1", {{u"TAG1", u"CR1"}, {u"DESC1", u"x"}, {u"LOC", u"A"}}, u"KVA_WD_XREF_STYLE"},
    {u"HCR1_NO", {{u"DESC1", u"x"}, {u"TAG2", u"CR1"}, {u"XREF", u""}}, nullptr},
    {u"HA1S1", {{u"WIRENO", u"101"}}, nullptr},
    {u"HA1D1", {{u"WIRENO", u"102"}}, nullptr},
    {u"HA2S1", {{u"DESC1", u"x"}}, nullptr},
    {u"HA2D1", {}, nullptr},
    {u"PLCIO_DI", {{u"TAG1", u"PLC1"}}, nullptr},
    {u"WD_WNH", {}, nullptr},
    {u"WD_MLR1", {}, nullptr},
    {u"WD_WCL", {}, nullptr},
    {u"FPT1", {}, u"KVA_WD_FPT"},
    {u"NP1", {{u"NP", u"1"}}, nullptr},
    {u"HT0_X1", {{u"TAGSTRIP", u"X1"}, {u"TERM01", u"1"}}, nullptr},
    {u"VAZX1", {}, nullptr},
    {u"", {}, nullptr},  // a table, below
    {u"ONE", {{u"WDTYPE", u"1-"}, {u"TAG1", u"W1"}}, nullptr},
    {u"ONES", {{u"WDTYPE", u"1-"}, {u"TAGSTRIP", u"X2"}}, nullptr},
    {u"LOGO", {{u"DESC1", u"x"}, {u"DESC2", u"y"}, {u"DESC3", u"z"}}, nullptr},
};

constexpr int kEntities = 50'000;
const char16_t* const kDrawing = u"Z:\\bench\\classify.dxf";

// The generated drawing, open in the host for getBlocks.
struct Drawing {
  std::shared_ptr<ZdDbDatabase> database = std::make_shared<ZdDbDatabase>();
  std::vector<ZdDbEntity*> entities;
  Drawing() {
    ZdDbDrawingBuilder build(*database);
    for (int i = 0; i < kEntities; ++i) {
      const Sample& sample = kSamples[static_cast<std::size_t>(i) % kSamples.size()];
      ZdDbBlockReference* entity = nullptr;
      if (sample.block.empty()) {
        entity = build.addTable();
        ZdDbDrawingBuilder::setOptionXData(*entity, u"OHM_TABLE_TYPE", u"XREF");
      } else {
        entity = build.insertBlock(sample.block, sample.attributes);
      }
      if (sample.xdataApp) ZdDbDrawingBuilder::setOptionXData(*entity, sample.xdataApp, u"1");
      ZdDbDrawingBuilder::setOptionXData(*entity, u"KVA_WD_PINLIST", u"3,11,14,12");
      entities.push_back(entity);
    }
    zdDocManagerPtr()->addDocument(kDrawing, database);
  }
};

Drawing& TheDrawing() {
  static Drawing drawing;
  return drawing;
}

void BM_getOhmObjectType(benchmark::State& state) {
  const Drawing& drawing = TheDrawing();
  for (auto _ : state) {
    for (const ZdDbEntity* entity : drawing.entities) benchmark::DoNotOptimize(OhmDwgUtils::getOhmObjectType(entity));
  }
  state.SetItemsProcessed(state.iterations() * kEntities);
}
BENCHMARK(BM_getOhmObjectType)->Unit(benchmark::kMillisecond);

void BM_ClassificationFloor(benchmark::State& state) {
  const Drawing& drawing = TheDrawing();
  for (auto _ : state) {
    for (const ZdDbEntity* entity : drawing.entities) {
      const auto* reference = static_cast<const ZdDbBlockReference*>(entity);
      const auto* block =
          static_cast<const ZdDbBlockTableRecord*>(drawing.database->objectAt(reference->blockTableRecord()));
      benchmark::DoNotOptimize(block ? block->name().size() : 0);
      if (reference->attributeIds().empty()) continue;
      const auto* attribute =
          static_cast<const ZdDbAttribute*>(drawing.database->objectAt(reference->attributeIds()[0]));
      benchmark::DoNotOptimize(attribute->tagConst());
    }
  }
  state.SetItemsProcessed(state.iterations() * kEntities);
  // The floor's own time per entity in nanoseconds: the rate of entities per
  // nanosecond, inverted.
  state.counters["ns_per_entity"] =
      benchmark::Counter(static_cast<double>(kEntities) / 1e9,
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_ClassificationFloor)->Unit(benchmark::kMillisecond);

void BM_getBlocksOfOneKind(benchmark::State& state) {
  TheDrawing();
  OhmDwgUtils::BlockMap blocks;
  for (auto _ : state) {
    if (OhmDwgUtils::getBlocks(kDrawing, blocks, OhmDwgUtils::EntityTag1) != Zeda::eOk)
      state.SkipWithError("getBlocks failed");
    benchmark::DoNotOptimize(blocks.size());
  }
  state.counters["found"] = static_cast<double>(blocks.size());
  state.SetItemsProcessed(state.iterations() * kEntities);
}
BENCHMARK(BM_getBlocksOfOneKind)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
