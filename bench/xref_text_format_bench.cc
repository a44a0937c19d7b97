// getXrefText on the four cases that matter in practice, beside a floor: one
// pass over the format into a preallocated buffer that substitutes the same
// values, with no checks and no case-insensitive path comparison.
#include <benchmark/benchmark.h>

#include <string>

#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"

namespace {

using Format = OhmNoRxUtilsXrefTextFormat;

struct Case {
  Format::Option option;
  std::u16string host;
  Format::RefData data;
};

Format::RefData Values(std::u16string path) {
  Format::RefData d;
  d.mDwgPath = std::move(path);
  d.mSheet = u"12";
  d.mRef = u"105";
  d.mSheetDwgName = u"SHT012";
  d.mIecInst = u"K1";
  d.mIecLoc = u"M2";
  d.mIecProject = u"P7";
  d.mValueA = u"A";
  d.mValueB = u"B";
  return d;
}

// 60-unit paths.
const std::u16string kHost = u"C:\\Projects\\Plant-4711\\Electrical\\Schematics\\Sheet-0002.dwg";
const std::u16string kHostOtherCase = u"c:\\projects\\plant-4711\\electrical\\schematics\\sheet-0002.DWG";
const std::u16string kOtherSheet = u"C:\\Projects\\Plant-4711\\Electrical\\Schematics\\Sheet-0003.dwg";

Case MakeCase(int which) {
  switch (which) {
    case 0:
      return {{u"%S.%N", u"", false}, kHost, Values(kHostOtherCase)};
    case 1:
      return {{u"", u"%I+%L/%D-%S.%N", false}, kHost, Values(kOtherSheet)};
    case 2:
      return {{u"=%P+%I-%L Sheet %S (%D) ref %N / %A", u"", false}, kHost, Values(kHost)};
    default:
      return {{u"%S.%N", u"", true}, kHost, Values(kHost)};
  }
}

const char* kNames[] = {"same-path-other-case", "other-sheet", "forty-unit-format", "underline"};

void BM_getXrefText(benchmark::State& state) {
  const Case c = MakeCase(static_cast<int>(state.range(0)));
  std::u16string out;
  out.reserve(128);
  for (auto _ : state) {
    Format::getXrefText(c.option, c.host, c.data, out);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetLabel(kNames[state.range(0)]);
}

// The floor: the format already chosen, straight substitution into a buffer.
void BM_floor(benchmark::State& state) {
  const Case c = MakeCase(static_cast<int>(state.range(0)));
  const std::u16string& format = c.option.mXrefFormat.empty() ? c.option.mXrefAltFormat : c.option.mXrefFormat;
  const Format::RefData& d = c.data;
  std::u16string out;
  out.reserve(128);
  for (auto _ : state) {
    out.clear();
    if (c.option.mUnderline) out += u"%%u";
    for (std::size_t i = 0; i < format.size(); ++i) {
      if (format[i] != u'%' || i + 1 == format.size()) {
        out += format[i];
        continue;
      }
      switch (format[++i]) {
        case u'S':
          out += d.mSheet;
          break;
        case u'N':
          out += d.mRef;
          break;
        case u'A':
          out += d.mValueA;
          break;
        case u'B':
          out += d.mValueB;
          break;
        case u'I':
          out += d.mIecInst;
          break;
        case u'L':
          out += d.mIecLoc;
          break;
        case u'P':
          out += d.mIecProject;
          break;
        case u'D':
          out += d.mSheetDwgName;
          break;
        default:
          out += u'%';
          out += format[i];
      }
    }
    if (c.option.mUnderline) out += u"%%u";
    benchmark::DoNotOptimize(out.data());
  }
  state.SetLabel(kNames[state.range(0)]);
}

BENCHMARK(BM_getXrefText)->DenseRange(0, 3);
BENCHMARK(BM_floor)->DenseRange(0, 3);

}  // namespace

BENCHMARK_MAIN();
