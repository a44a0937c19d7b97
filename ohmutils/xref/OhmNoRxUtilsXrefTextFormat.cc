#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat_internal.h"
#include "ohmutils/xref/ReplaceStringInString.h"

namespace {

using namespace ohm_internal;

// The tokens in the order they are substituted, as the values are.
constexpr const char16_t* kTokensInOrder[kXrefTokenCount] = {u"%S", u"%N", u"%A", u"%B", u"%I", u"%L", u"%P", u"%D"};

// The host's text code that switches underlining on and off.
constexpr std::u16string_view kUnderlineCode = u"%%u";

// Path comparison, a block of units at a time: the units of a block are the
// lanes of a vector, and the compiler maps the lane-wise operations to the
// machine's vector instructions. The last block may overlap the one before
// it. The paths of two drawings usually differ in their last units, the name
// and extension, so the last block is tested on its own first; paths that are
// equal but for case, the common case, then compare all other blocks before
// the one test of the result.
using Lanes8 = std::uint16_t __attribute__((vector_size(16)));

template <class Lanes>
struct PathBlocks {
  static constexpr std::size_t kUnits = sizeof(Lanes) / sizeof(char16_t);

  // Vectors pass by reference only: by value, a 32-byte one would take a
  // different calling convention in code built for AVX and in code built without.

  // `unequal` gets the lanes where the blocks at `x` and `y` are not equal
  // after a-z -> A-Z (non-zero there). Two units are equal so when they agree
  // in every bit but 0x20, and in that one too unless the unit at `x` is a letter.
  [[gnu::always_inline]] static void unequalLanes(const char16_t* x, const char16_t* y, Lanes& unequal) noexcept {
    Lanes a, b;
    std::memcpy(&a, x, sizeof a);
    std::memcpy(&b, y, sizeof b);
    const Lanes caseBit = Lanes{} + std::uint16_t{0x20};
    const Lanes lowerA = Lanes{} + std::uint16_t{u'a'};
    const Lanes alphabet = Lanes{} + std::uint16_t{26};
    const Lanes letter = reinterpret_cast<Lanes>((a | caseBit) - lowerA < alphabet);  // all ones where a-z or A-Z
    unequal = (a ^ b) & ~(letter & caseBit);
  }

  [[gnu::always_inline]] static bool anyLane(const Lanes& lanes) noexcept {
    std::uint64_t words[sizeof(Lanes) / sizeof(std::uint64_t)];
    std::memcpy(words, &lanes, sizeof words);
    std::uint64_t any = 0;
    for (const std::uint64_t word : words) any |= word;
    return any != 0;
  }

  // REQUIRES: size >= kUnits.
  [[gnu::always_inline]] static bool same(const char16_t* x, const char16_t* y, std::size_t size) noexcept {
    Lanes last, block, unequal{};
    unequalLanes(x + size - kUnits, y + size - kUnits, last);
    if (anyLane(last)) return false;
    for (std::size_t i = 0; i + kUnits < size; i += kUnits) {
      unequalLanes(x + i, y + i, block);
      unequal |= block;
    }
    return !anyLane(unequal);
  }
};

bool sameShortPath(const char16_t* x, const char16_t* y, std::size_t size) noexcept {
  auto fold = [](char16_t unit) {
    return static_cast<char16_t>(unit - (static_cast<char16_t>(unit - u'a') < 26u ? 0x20 : 0));
  };
  for (std::size_t i = 0; i < size; ++i)
    if (fold(x[i]) != fold(y[i])) return false;
  return true;
}

bool sameLongPath(const char16_t* x, const char16_t* y, std::size_t size) noexcept {
  return PathBlocks<Lanes8>::same(x, y, size);
}

#if defined(__x86_64__)
// Wider blocks where the processor has them, chosen once, at load: sixteen
// units with AVX2, which every x86-64 processor of the last decade has, and
// thirty-two with AVX-512. The same steps as PathBlocks, with the vector's
// own test of all lanes at the end.
[[gnu::target("avx2")]] bool sameLongPathAvx2(const char16_t* x, const char16_t* y, std::size_t size) noexcept {
  if (size < 16) return PathBlocks<Lanes8>::same(x, y, size);
  const __m256i caseBit = _mm256_set1_epi16(0x20);
  const __m256i lowerA = _mm256_set1_epi16(u'a');
  const __m256i lastLetter = _mm256_set1_epi16(25);
  __m256i unequal = _mm256_setzero_si256();
  // The last block first, on its own; then the others.
  for (std::size_t at = size - 16, next = 0;; at = next, next += 16) {
    const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(x + at));
    const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(y + at));
    const __m256i offset = _mm256_sub_epi16(_mm256_or_si256(a, caseBit), lowerA);
    const __m256i letter = _mm256_cmpeq_epi16(_mm256_min_epu16(offset, lastLetter), offset);
    unequal = _mm256_or_si256(unequal, _mm256_andnot_si256(_mm256_and_si256(letter, caseBit), _mm256_xor_si256(a, b)));
    if (next == 0 && !_mm256_testz_si256(unequal, unequal)) return false;
    if (next + 16 >= size) break;
  }
  return _mm256_testz_si256(unequal, unequal);
}

// Sets in `unequal` the lanes where the blocks at `x` and `y` differ after a-z -> A-Z.
[[gnu::target("avx512bw"), gnu::always_inline]] inline void orUnequalLanes512(const char16_t* x, const char16_t* y,
                                                                            __m512i& unequal) noexcept {
  const __m512i a = _mm512_loadu_si512(x);
  const __m512i diff = _mm512_xor_si512(a, _mm512_loadu_si512(y));
  // Where the unit is a letter, the two may differ in 0x20 alone.
  const __mmask32 letter = _mm512_cmple_epu16_mask(
      _mm512_sub_epi16(_mm512_or_si512(a, _mm512_set1_epi16(0x20)), _mm512_set1_epi16(u'a')), _mm512_set1_epi16(25));
  unequal =
      _mm512_or_si512(unequal, _mm512_mask_mov_epi16(diff, letter, _mm512_and_si512(diff, _mm512_set1_epi16(~0x20))));
}

// A block holds 32 units, so a path of 60 units takes two, the last one
// overlapping the one before it, as with the narrower blocks: plain loads.
// (Masked loads, which avoid the overlap, were slower: each block's mask
// must be worked out before its loads can start.) The paths are usually
// equal but for case, so every block is compared before the one test of the
// result.
[[gnu::target("avx512bw")]] bool sameLongPathAvx512(const char16_t* x, const char16_t* y, std::size_t size) noexcept {
  if (size < 32) return sameLongPathAvx2(x, y, size);
  __m512i unequal = _mm512_setzero_si512();
  orUnequalLanes512(x + size - 32, y + size - 32, unequal);
  for (std::size_t at = 0; at + 32 < size; at += 32) orUnequalLanes512(x + at, y + at, unequal);
  return _mm512_test_epi16_mask(unequal, unequal) == 0;
}

using SamePath = bool (*)(const char16_t*, const char16_t*, std::size_t) noexcept;
const SamePath kSameLongPath = [] {
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx512bw")) return &sameLongPathAvx512;
  return __builtin_cpu_supports("avx2") ? &sameLongPathAvx2 : &sameLongPath;
}();
#else
constexpr auto kSameLongPath = &sameLongPath;
#endif

// Values that hold a '%', or a "%%" in the format, can make or eat a token of
// a later step; only then does the order of the steps show in the text.
bool holdsPercent(const std::u16string& text) noexcept {
  bool found = false;
  for (const char16_t unit : text) found |= unit == u'%';  // no branch per unit
  return found;
}

// The token of each letter A-Z; -1 for the letters that name no substituted token.
constexpr std::array<std::int8_t, 26> kTokenOfLetter = [] {
  std::array<std::int8_t, 26> tokens{};
  tokens.fill(-1);
  const std::pair<char16_t, XrefToken> letters[] = {{u'S', kSheet},      {u'N', kRef},         {u'A', kValueA},
                                                    {u'B', kValueB},     {u'I', kIecInst},     {u'L', kIecLoc},
                                                    {u'P', kIecProject}, {u'D', kSheetDwgName}};
  for (const auto& [letter, token] : letters) tokens[letter - u'A'] = static_cast<std::int8_t>(token);
  return tokens;
}();

// The value that "%<letter>" is substituted with; null when it is no substituted token.
const std::u16string* valueOfLetter(char16_t letter, const XrefTextValues& values) noexcept {
  const unsigned index = static_cast<unsigned>(letter) - u'A';
  if (index >= kTokenOfLetter.size() || kTokenOfLetter[index] < 0) return nullptr;
  return values[static_cast<std::size_t>(kTokenOfLetter[index])];
}

// Where the tokens of a format stand and what replaces them, noted by the
// measuring pass for the writing pass: all of them, unless there are more
// than kRoom; then the writing pass finds them again.
struct TokenNotes {
  static constexpr std::size_t kRoom = 8;
  std::size_t count = 0;
  std::size_t at[kRoom];
  const std::u16string* value[kRoom];
};

// The length of the text when one pass over the format gives the text of the
// ordered replacements, that is when the tokens cannot interact; nothing otherwise.
std::optional<std::size_t> independentTextLength(const std::u16string& format, const XrefTextValues& values,
                                                 TokenNotes& notes) noexcept {
  std::size_t length = format.size();
  bool interacting = false;  // tested once at the end: the usual format has no interaction
  for (std::size_t i = 0; i + 1 < format.size(); ++i) {
    if (format[i] != u'%') continue;
    interacting |= format[i + 1] == u'%';
    const std::u16string* value = valueOfLetter(format[i + 1], values);
    if (!value) continue;
    interacting |= holdsPercent(*value);
    length += value->size() - 2;
    if (notes.count < TokenNotes::kRoom) {
      notes.at[notes.count] = i;
      notes.value[notes.count] = value;
    }
    ++notes.count;
    ++i;
  }
  if (interacting) return std::nullopt;
  return length;
}

// Copies `count` units; the short runs of a reference text go without a call.
char16_t* put(char16_t* to, const char16_t* from, std::size_t count) noexcept {
  if (count > 8) {
    std::memcpy(to, from, count * sizeof(char16_t));
  } else if (count >= 4) {  // two blocks of four, overlapping unless count is 8
    std::uint64_t head, tail;
    std::memcpy(&head, from, sizeof head);
    std::memcpy(&tail, from + count - 4, sizeof tail);
    std::memcpy(to, &head, sizeof head);
    std::memcpy(to + count - 4, &tail, sizeof tail);
  } else if (count > 0) {
    to[0] = from[0];
    to[count / 2] = from[count / 2];
    to[count - 1] = from[count - 1];
  }
  return to + count;
}

char16_t* put(char16_t* to, const std::u16string& text) noexcept { return put(to, text.data(), text.size()); }

// Writes the format with every token replaced by its value, in one pass.
char16_t* putSubstituted(char16_t* to, const std::u16string& format, const XrefTextValues& values) noexcept {
  const char16_t* const units = format.data();
  std::size_t done = 0;
  for (std::size_t i = 0; i + 1 < format.size(); ++i) {
    if (units[i] != u'%') continue;
    const std::u16string* value = valueOfLetter(units[i + 1], values);
    if (!value) continue;
    to = put(put(to, units + done, i - done), *value);
    done = ++i + 1;
  }
  return put(to, units + done, format.size() - done);
}

// The same from the notes of the measuring pass, which spare the writing pass
// a second search of the format.
char16_t* putNoted(char16_t* to, const std::u16string& format, const TokenNotes& notes,
                   const XrefTextValues& values) noexcept {
  if (notes.count > TokenNotes::kRoom) return putSubstituted(to, format, values);
  std::size_t done = 0;
  for (std::size_t t = 0; t < notes.count; ++t) {
    to = put(put(to, format.data() + done, notes.at[t] - done), *notes.value[t]);
    done = notes.at[t] + 2;
  }
  return put(to, format.data() + done, format.size() - done);
}

// The literal series of whole-text replacements in the order above.
void substituteInOrder(const std::u16string& format, const XrefTextValues& values, std::u16string& output) {
  CString working(format);
  for (std::size_t step = 0; step < kXrefTokenCount; ++step)
    ReplaceStringInString(working, kTokensInOrder[step], values[step]->c_str());
  output = working.str();
}

bool isOneOf(const std::u16string& output, const std::u16string& format, const XrefTextValues& values) noexcept {
  if (&output == &format) return true;
  for (const std::u16string* value : values)
    if (&output == value) return true;
  return false;
}

// formatXrefText's body, which getXrefText takes in without a call.
[[gnu::always_inline]] inline void writeXrefText(const std::u16string& format, bool underline,
                                                 const XrefTextValues& values, std::u16string& output) {
  // The one-pass writer fills the output in place, so it must not read from it.
  if (isOneOf(output, format, values)) {
    std::u16string text;
    ohm_internal::formatXrefText(format, underline, values, text);
    output = std::move(text);
    return;
  }
  TokenNotes notes;
  const std::optional<std::size_t> length = independentTextLength(format, values, notes);
  if (!length) {
    substituteInOrder(format, values, output);
    if (underline) output.insert(0, kUnderlineCode).append(kUnderlineCode);
    return;
  }
  // The only allocation, if any; should it fail, the output is still intact.
  output.resize(*length + (underline ? 2 * kUnderlineCode.size() : 0));
  char16_t* to = output.data();
  if (underline) to = put(to, kUnderlineCode.data(), kUnderlineCode.size());
  to = putNoted(to, format, notes, values);
  if (underline) put(to, kUnderlineCode.data(), kUnderlineCode.size());
}

}  // namespace

namespace ohm_internal {

bool sameDrawingPath(const std::u16string& a, const std::u16string& b) noexcept {
  const std::size_t size = a.size();
  if (size != b.size()) return false;
  if (size < 8) return sameShortPath(a.data(), b.data(), size);
  return kSameLongPath(a.data(), b.data(), size);
}

void formatXrefText(const std::u16string& format, bool underline, const XrefTextValues& values,
                    std::u16string& output) {
  writeXrefText(format, underline, values, output);
}

}  // namespace ohm_internal

bool OhmNoRxUtilsXrefTextFormat::getXrefText(const Option& option, const std::u16string& hostDwgPath,
                                             const RefData& data, std::u16string& output) {
  const std::u16string& format =
      ohm_internal::sameDrawingPath(hostDwgPath, data.mDwgPath) ? option.mXrefFormat : option.mXrefAltFormat;
  const ohm_internal::XrefTextValues values{&data.mSheet,   &data.mRef,    &data.mValueA,     &data.mValueB,
                                            &data.mIecInst, &data.mIecLoc, &data.mIecProject, &data.mSheetDwgName};
  writeXrefText(format, option.mUnderline, values, output);
  return true;
}

bool ReplaceStringInString(CString& text, LPCWSTR find, LPCWSTR replacement) {
  return text.Replace(find, replacement) > 0;
}
