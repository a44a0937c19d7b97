// The wildcard match on the classification's patterns against realistic
// block names and tags, beside a floor that has every pattern split into
// alternatives and case-folded once beforehand; an adversarial text; and the
// xdata look-up on an entity with five applications.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "win/CrtChar.h"
#include "zd/ZdWcMatch.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

const std::vector<std::u16string> kPatterns = {
    u"TAG1,TAG1F,TAG1*PART1", u"?T0*,?T1*,?T_*", u"HA#S*", u"H?1*,H?2*", u"VIA_WD_*", u"WD_M*,WD_PNLM*"};
const std::vector<std::u16string> kTexts = {u"TAG1",         u"tag1f",  u"TAG1_PART1", u"HT0_COIL",
                                            u"HCR1_NO_CONT", u"HA1S22", u"ha1s",       u"VIA_WD_WIRE",
                                            u"WD_PNLM",      u"XREFNC", u"DESC1",      u"LOC"};

void BM_zdutWcMatchEx(benchmark::State& state) {
  for (auto _ : state)
    for (const auto& text : kTexts)
      for (const auto& pattern : kPatterns)
        benchmark::DoNotOptimize(zdutWcMatchEx(text.c_str(), pattern.c_str(), true));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kTexts.size() * kPatterns.size()));
}

// Floor: patterns split at ',' and upper-cased once; the texts folded per call.
bool FloorMatch(std::u16string_view t, std::u16string_view p) {
  std::size_t ti = 0, pi = 0, starP = std::u16string_view::npos, starT = 0;
  while (ti < t.size()) {
    if (pi < p.size() && p[pi] == u'*') {
      starP = pi++;
      starT = ti;
    } else if (pi < p.size() &&
               (p[pi] == u'?' || (p[pi] == u'#' ? t[ti] >= u'0' && t[ti] <= u'9' : p[pi] == CrtToUpper(t[ti])))) {
      ++pi;
      ++ti;
    } else if (starP != std::u16string_view::npos) {
      pi = starP + 1;
      ti = ++starT;
    } else {
      return false;
    }
  }
  while (pi < p.size() && p[pi] == u'*') ++pi;
  return pi == p.size();
}

void BM_floor(benchmark::State& state) {
  std::vector<std::vector<std::u16string>> split;
  for (const auto& pattern : kPatterns) {
    split.emplace_back();
    std::size_t start = 0;
    for (std::size_t comma; (comma = pattern.find(u',', start)) != std::u16string::npos; start = comma + 1)
      split.back().push_back(CrtUpperCopy(pattern.substr(start, comma - start)));
    split.back().push_back(CrtUpperCopy(pattern.substr(start)));
  }
  for (auto _ : state)
    for (const auto& text : kTexts)
      for (const auto& alternatives : split) {
        bool any = false;
        for (const auto& alternative : alternatives) any = any || FloorMatch(text, alternative);
        benchmark::DoNotOptimize(any);
      }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kTexts.size() * kPatterns.size()));
}

void BM_adversarial(benchmark::State& state) {
  const std::u16string text(10000, u'a');
  for (auto _ : state) benchmark::DoNotOptimize(zdutWcMatchEx(text.c_str(), u"*a*a*a*a*a*b", true));
}

void BM_getOhmEntityXData(benchmark::State& state) {
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  ZdDbBlockReference* coil = build.insertBlock(u"HCR1");
  for (const char16_t* app : {u"KVA_WD_XREF_STYLE", u"KVA_WD_XREF_FORMAT", u"KVA_WD_XREF_ALTFORMAT",
                              u"KVA_WD_XREF_TXTBTWN", u"KVA_WD_PINLIST"})
    ZdDbDrawingBuilder::setOptionXData(*coil, app, u"%S.%N");
  std::u16string value;
  for (auto _ : state) benchmark::DoNotOptimize(OhmDwgUtils::getOhmEntityXData(coil, u"KVA_WD_XREF_TXTBTWN", value));
}

BENCHMARK(BM_zdutWcMatchEx);
BENCHMARK(BM_floor);
BENCHMARK(BM_adversarial)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_getOhmEntityXData);

}  // namespace

BENCHMARK_MAIN();
