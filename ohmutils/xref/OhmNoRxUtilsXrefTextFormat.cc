#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"

#include <cstring>
#include <functional>
#include <optional>

#include "ohmutils/xref/ReplaceStringInString.h"

const std::u16string OhmNoRxUtilsXrefTextFormat::mMTextUnderlineFormat = u"%%u";

namespace {

using RefData = OhmNoRxUtilsXrefTextFormat::RefData;

// Token of each property index; %G (3) and %F (4) are never substituted.
constexpr const char16_t* kPropAliases[] = {u"%S", u"%N", u"%D", u"%G", u"%F", u"%A", u"%B", u"%P", u"%I", u"%L"};

// Property indices of the alias table, in the order they are substituted.
constexpr std::int32_t kSubstitutionOrder[] = {0, 1, 5, 6, 8, 9, 7, 2};

// A unit with A-Z folded to a-z.
constexpr char16_t foldCase(char16_t unit) noexcept {
  return static_cast<char16_t>(unit + (static_cast<char16_t>(unit - u'A') < 26u ? 0x20 : 0));
}

// Eight units as the lanes of a vector; the compiler maps the lane-wise
// operations below to the machine's vector instructions.
using Lanes = std::uint16_t __attribute__((vector_size(16)));

// The lanes where eight units at `x` and `y` are not equal after a-z -> A-Z
// (non-zero there): lanes may differ only in bit 0x20, and where they do, the
// unit with it set must be a-z.
Lanes unequalLanesNoCase(const char16_t* x, const char16_t* y) noexcept {
  Lanes a, b;
  std::memcpy(&a, x, sizeof a);
  std::memcpy(&b, y, sizeof b);
  const Lanes differ = a ^ b;
  const Lanes lowerA = Lanes{} + std::uint16_t{u'a'};
  const Lanes alphabet = Lanes{} + std::uint16_t{26};
  const Lanes letter = reinterpret_cast<Lanes>((a | std::uint16_t{0x20}) - lowerA < alphabet);  // all ones where a-z
  return (differ & ~0x20) | (differ & ~letter);
}

// Whether two paths are equal after a-z -> A-Z, eight units at a time; the
// last block may overlap the one before it. Paths that are equal but for
// case are the common case, so the blocks are all compared before the one
// test of the result.
bool samePathNoCase(const std::u16string& a, const std::u16string& b) noexcept {
  const std::size_t size = a.size();
  if (size != b.size()) return false;
  const char16_t* x = a.data();
  const char16_t* y = b.data();
  constexpr std::size_t kBlock = sizeof(Lanes) / sizeof(char16_t);
  if (size < kBlock) {
    for (std::size_t i = 0; i < size; ++i)
      if (foldCase(x[i]) != foldCase(y[i])) return false;
    return true;
  }
  Lanes unequal = unequalLanesNoCase(x + size - kBlock, y + size - kBlock);
  for (std::size_t i = 0; i + kBlock < size; i += kBlock) unequal |= unequalLanesNoCase(x + i, y + i);
  std::uint64_t halves[2];
  std::memcpy(halves, &unequal, sizeof halves);
  return (halves[0] | halves[1]) == 0;
}

// The field that the property index stands for; null for %G and %F.
const std::u16string* fieldForIndex(std::int32_t index, const RefData& data) {
  switch (index) {
    case 0:
      return &data.mSheet;
    case 1:
      return &data.mRef;
    case 2:
      return &data.mSheetDwgName;
    case 5:
      return &data.mValueA;
    case 6:
      return &data.mValueB;
    case 7:
      return &data.mIecProject;
    case 8:
      return &data.mIecInst;
    case 9:
      return &data.mIecLoc;
    default:
      return nullptr;
  }
}

// The field that "%<letter>" is substituted with; null when it is no substituted token.
const std::u16string* fieldForLetter(char16_t letter, const RefData& data) {
  switch (letter) {
    case u'S':
      return &data.mSheet;
    case u'N':
      return &data.mRef;
    case u'A':
      return &data.mValueA;
    case u'B':
      return &data.mValueB;
    case u'I':
      return &data.mIecInst;
    case u'L':
      return &data.mIecLoc;
    case u'P':
      return &data.mIecProject;
    case u'D':
      return &data.mSheetDwgName;
    default:
      return nullptr;
  }
}

bool isWithin(const void* p, const void* begin, const void* end) {
  return !std::less<const void*>()(p, begin) && std::less<const void*>()(p, end);
}

// Position of the next '%' at or after `from` that has a unit behind it, or npos.
std::size_t nextPercentPair(const std::u16string& format, std::size_t from) {
  for (std::size_t i = from; i + 1 < format.size(); ++i)
    if (format[i] == u'%') return i;
  return std::u16string::npos;
}

// One pass over the format gives the text of the ordered replacements only
// when the tokens cannot interact: then no step can make or eat a token of a
// later step. A token can only be formed across a substitution by a '%' next
// to inserted text, which needs "%%" in the format or a '%' in an inserted
// value. Gives the length of the text, or nothing when either is present.
std::optional<std::size_t> independentTextLength(const std::u16string& format, const RefData& data) {
  std::size_t length = format.size();
  for (std::size_t i = nextPercentPair(format, 0); i != std::u16string::npos; i = nextPercentPair(format, i + 2)) {
    if (format[i + 1] == u'%') return std::nullopt;
    const std::u16string* field = fieldForLetter(format[i + 1], data);
    if (!field) continue;
    if (field->find(u'%') != std::u16string::npos) return std::nullopt;
    length += field->size() - 2;
  }
  return length;
}

// Appends the format with every token replaced by its field, in one pass.
void appendSubstituted(const std::u16string& format, const RefData& data, std::u16string& out) {
  std::size_t done = 0;
  for (std::size_t i = nextPercentPair(format, 0); i != std::u16string::npos; i = nextPercentPair(format, i + 2)) {
    const std::u16string* field = fieldForLetter(format[i + 1], data);
    if (!field) continue;
    out.append(format, done, i - done).append(*field);
    done = i + 2;
  }
  out.append(format, done);
}

}  // namespace

bool OhmNoRxUtilsXrefTextFormat::getXrefText(const Option& option, const std::u16string& hostDwgPath,
                                             const RefData& data, std::u16string& output) {
  const std::u16string& format =
      samePathNoCase(hostDwgPath, data.mDwgPath) ? option.mXrefFormat : option.mXrefAltFormat;
  // The one-pass writer fills the output in place, so it must not read from it.
  const bool outputIsInput = &output == &format || isWithin(&output, &data, &data + 1);
  const std::optional<std::size_t> length = outputIsInput ? std::nullopt : independentTextLength(format, data);
  if (!length) {
    substituteInOrder(format, data, output);
    if (option.mUnderline) applyMTextUnderline(output);
    return true;
  }
  const std::u16string& code = mMTextUnderlineFormat;
  // The only allocation, if any; should it fail, the output is still intact.
  output.reserve(*length + (option.mUnderline ? 2 * code.size() : 0));
  output.clear();
  if (option.mUnderline) output += code;
  appendSubstituted(format, data, output);
  if (option.mUnderline) output += code;
  return true;
}

void OhmNoRxUtilsXrefTextFormat::substituteInOrder(const std::u16string& format, const RefData& data,
                                                   std::u16string& output) {
  CString working(format);
  for (const std::int32_t index : kSubstitutionOrder) {
    // Every index of the order has a field.
    if (const std::u16string* field = fieldForIndex(index, data))
      ReplaceStringInString(working, kPropAliases[index], field->c_str());
  }
  output = working.str();
}

void OhmNoRxUtilsXrefTextFormat::applyMTextUnderline(std::u16string& text) {
  text = mMTextUnderlineFormat + text + mMTextUnderlineFormat;
}

bool ReplaceStringInString(CString& text, LPCWSTR find, LPCWSTR replacement) {
  return text.Replace(find, replacement) > 0;
}
