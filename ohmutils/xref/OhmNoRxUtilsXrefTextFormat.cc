#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"

#include <functional>
#include <optional>

#include "ohmutils/xref/ReplaceStringInString.h"
#include "win/CrtChar.h"

const std::u16string OhmNoRxUtilsXrefTextFormat::mMTextUnderlineFormat = u"%%u";
std::map<std::int32_t, const char16_t*> OhmNoRxUtilsXrefTextFormat::mPropAliases;

namespace {

using RefData = OhmNoRxUtilsXrefTextFormat::RefData;

// Property indices of the alias table, in the order they are substituted.
constexpr std::int32_t kSubstitutionOrder[] = {0, 1, 5, 6, 8, 9, 7, 2};

// The field that the property index stands for; null for %G and %F.
const std::u16string* fieldForIndex(std::int32_t index, const RefData& data) {
  switch (index) {
    case 0: return &data.mSheet;
    case 1: return &data.mRef;
    case 2: return &data.mSheetDwgName;
    case 5: return &data.mValueA;
    case 6: return &data.mValueB;
    case 7: return &data.mIecProject;
    case 8: return &data.mIecInst;
    case 9: return &data.mIecLoc;
    default: return nullptr;
  }
}

// The field that "%<letter>" is substituted with; null when it is no substituted token.
const std::u16string* fieldForLetter(char16_t letter, const RefData& data) {
  switch (letter) {
    case u'S': return &data.mSheet;
    case u'N': return &data.mRef;
    case u'A': return &data.mValueA;
    case u'B': return &data.mValueB;
    case u'I': return &data.mIecInst;
    case u'L': return &data.mIecLoc;
    case u'P': return &data.mIecProject;
    case u'D': return &data.mSheetDwgName;
    default: return nullptr;
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
  populatePropAliases();
  const std::u16string& format =
      CrtEqualNoCase(hostDwgPath, data.mDwgPath) ? option.mXrefFormat : option.mXrefAltFormat;
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
    if (const std::u16string* field = fieldForIndex(index, data)) ReplaceStringInString(working, mPropAliases.at(index), field->c_str());
  }
  output = working.str();
}

void OhmNoRxUtilsXrefTextFormat::populatePropAliases() {
  if (!mPropAliases.empty()) return;
  mPropAliases = {{0, u"%S"}, {1, u"%N"}, {2, u"%D"}, {3, u"%G"}, {4, u"%F"},
                  {5, u"%A"}, {6, u"%B"}, {7, u"%P"}, {8, u"%I"}, {9, u"%L"}};
}

void OhmNoRxUtilsXrefTextFormat::applyMTextUnderline(std::u16string& text) {
  text = mMTextUnderlineFormat + text + mMTextUnderlineFormat;
}

bool ReplaceStringInString(CString& text, LPCWSTR find, LPCWSTR replacement) {
  return text.Replace(find, replacement) > 0;
}
