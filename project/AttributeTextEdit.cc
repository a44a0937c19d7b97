#include "project/AttributeTextEdit.h"

#include <charconv>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "zd/dxf/DxfTextCodec.h"

namespace {

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

std::string UpperAscii(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

// One group: its code line's content and the place of its value line's content.
struct Group {
  std::string_view code;
  std::size_t valueAt = 0;
  std::size_t valueSize = 0;
};

// Walks the groups of a DXF text, one pair of lines at a time.
class GroupScanner {
 public:
  explicit GroupScanner(std::string_view text) : mText(text) {}

  bool next(Group& group) {
    std::size_t codeAt = 0, codeSize = 0;
    if (!line(codeAt, codeSize) || !line(group.valueAt, group.valueSize)) return false;
    group.code = Trimmed(mText.substr(codeAt, codeSize));
    return true;
  }
  std::string_view value(const Group& group) const { return mText.substr(group.valueAt, group.valueSize); }

 private:
  // The next line's content, without "\n" or "\r\n".
  bool line(std::size_t& at, std::size_t& size) {
    if (mAt >= mText.size()) return false;
    const std::size_t end = std::min(mText.find('\n', mAt), mText.size());
    at = mAt;
    size = end - mAt;
    if (size > 0 && mText[at + size - 1] == '\r') --size;
    mAt = end + 1;
    return true;
  }

  std::string_view mText;
  std::size_t mAt = 0;
};

struct Replacement {
  std::size_t at = 0, size = 0;
  std::string bytes;
};

// The codec the header names ($ACADVER, $DWGCODEPAGE).
std::optional<DxfTextCodec> CodecOf(std::string_view text) {
  GroupScanner scanner(text);
  Group group;
  std::string version, codePage;
  std::string_view pending;
  while (scanner.next(group)) {
    const std::string_view value = scanner.value(group);
    if (group.code == "0" && Trimmed(value) == "ENDSEC") break;
    if (group.code == "9") {
      pending = Trimmed(value);
    } else if (pending == "$ACADVER") {
      version = std::string(Trimmed(value)), pending = {};
    } else if (pending == "$DWGCODEPAGE") {
      codePage = std::string(Trimmed(value)), pending = {};
    }
  }
  return DxfTextCodec::forDrawing(version, codePage);
}

std::uint64_t HandleOf(std::string_view text) {
  std::uint64_t handle = 0;
  const std::string_view trimmed = Trimmed(text);
  const auto [end, error] = std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), handle, 16);
  return error == std::errc() && end == trimmed.data() + trimmed.size() ? handle : 0;
}

class Editor {
 public:
  Editor(std::string_view text, const DxfTextCodec& codec) : mText(text), mCodec(codec) {}

  std::string run(const std::vector<AttributeTextEdit>& edits) {
    for (std::size_t i = 0; i < edits.size(); ++i) {
      mWanted[{edits[i].handle, UpperAscii(mCodec.encode(edits[i].tag))}] = i;
    }
    GroupScanner scanner(mText);
    Group group;
    while (scanner.next(group)) {
      if (group.code == "0") {
        endAttribute(edits);
        startEntity(Trimmed(scanner.value(group)));
      } else if (mInAttribute) {
        readAttributeGroup(group, scanner.value(group));
      } else if (mInInsert && group.code == "5") {
        mInsert = HandleOf(scanner.value(group));
      }
      if (!mProblem.empty()) return mProblem;
    }
    if (mDone.size() != edits.size()) return "an attribute to change is not in the file";
    return {};
  }

  std::string edited() const {
    std::string out;
    out.reserve(mText.size() + 64 * mReplacements.size());
    std::size_t at = 0;
    for (const auto& [start, replacement] : mReplacements) {
      out.append(mText.substr(at, start - at));
      out.append(replacement.bytes);
      at = start + replacement.size;
    }
    out.append(mText.substr(at));
    return out;
  }

 private:
  void startEntity(std::string_view type) {
    if (type == "ATTRIB" && mInsert != 0) {
      mInAttribute = true;
      mEmbedded = false;
      mTag.reset();
      mValue.reset();
      return;
    }
    mInAttribute = false;
    mInInsert = type == "INSERT";
    if (type != "ATTRIB") mInsert = 0;
  }

  void readAttributeGroup(const Group& group, std::string_view value) {
    if (group.code == "101") mEmbedded = true;  // an embedded text's groups follow; the value came before
    if (mEmbedded) return;
    if (group.code == "2" && !mTag) mTag = UpperAscii(std::string(Trimmed(value)));
    if (group.code == "1" && !mValue) mValue = group;
  }

  void endAttribute(const std::vector<AttributeTextEdit>& edits) {
    if (!mInAttribute || !mTag || !mValue) return;
    const auto wanted = mWanted.find({mInsert, *mTag});
    if (wanted == mWanted.end()) return;
    const AttributeTextEdit& edit = edits[wanted->second];
    if (mText.substr(mValue->valueAt, mValue->valueSize) != mCodec.encode(edit.oldValue)) {
      mProblem = "the value of attribute " + *mTag + " changed since the drawing was read";
      return;
    }
    if (!mDone.insert(wanted->second).second) {
      mProblem = "attribute " + *mTag + " stands twice on one block reference";
      return;
    }
    mReplacements.emplace(mValue->valueAt,
                          Replacement{mValue->valueAt, mValue->valueSize, mCodec.encode(edit.newValue)});
  }

  std::string_view mText;
  const DxfTextCodec& mCodec;
  std::map<std::pair<std::uint64_t, std::string>, std::size_t> mWanted;
  std::map<std::size_t, Replacement> mReplacements;
  std::set<std::size_t> mDone;
  std::string mProblem;
  bool mInInsert = false, mInAttribute = false, mEmbedded = false;
  std::uint64_t mInsert = 0;
  std::optional<std::string> mTag;
  std::optional<Group> mValue;
};

}  // namespace

EditedText EditAttributeValues(std::string_view text, const std::vector<AttributeTextEdit>& edits) {
  const std::optional<DxfTextCodec> codec = CodecOf(text);
  if (!codec) return {{}, "the drawing's code page can't be converted"};
  Editor editor(text, *codec);
  if (std::string problem = editor.run(edits); !problem.empty()) return {{}, std::move(problem)};
  return {editor.edited(), {}};
}
