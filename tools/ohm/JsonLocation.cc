#include "JsonLocation.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>
#include <vector>

namespace {

// The offset just past the closing quote of the string that opens at `at`
// (the end of the text when it never closes). A quote closes the string
// unless an odd number of backslashes stands right before it; the search
// for quotes runs at memchr's speed through long strings.
std::size_t PastString(std::string_view text, std::size_t at) {
  for (std::size_t from = at + 1;;) {
    const std::size_t quote = text.find('"', from);
    if (quote == std::string_view::npos) return text.size();
    std::size_t backslashes = 0;
    while (quote - backslashes > at + 1 && text[quote - backslashes - 1] == '\\') ++backslashes;
    if (backslashes % 2 == 0) return quote + 1;
    from = quote + 1;
  }
}

// Walks a well-formed JSON text; every step starts at a value or separator.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : mText(text) {}

  std::size_t find(const std::vector<std::string>& tokens, bool memberName) {
    skipSpace();
    for (const std::string& token : tokens) {
      if (!enter(token)) return std::string_view::npos;
      skipSpace();
    }
    return memberName && mNameAt != std::string_view::npos ? mNameAt : mAt;
  }

 private:
  char peek() const { return mAt < mText.size() ? mText[mAt] : '\0'; }
  void skipSpace() {
    while (mAt < mText.size() && (peek() == ' ' || peek() == '\t' || peek() == '\n' || peek() == '\r')) ++mAt;
  }
  // Moves from the container at mAt to its member or element `token`.
  bool enter(const std::string& token) {
    if (peek() == '{') return enterMember(token);
    if (peek() == '[') return enterElement(token);
    return false;
  }
  bool enterMember(const std::string& key) {
    ++mAt;
    for (skipSpace(); peek() == '"'; skipSpace()) {
      mNameAt = mAt;
      const std::string name = readString();
      skipSpace();
      ++mAt;  // ':'
      skipSpace();
      if (name == key) return true;
      skipValue();
      skipSpace();
      if (peek() == ',') ++mAt;
      skipSpace();
    }
    return false;
  }
  bool enterElement(const std::string& token) {
    mNameAt = std::string_view::npos;
    std::size_t index = 0;
    for (char c : token) {
      if (c < '0' || c > '9') return false;
      index = index * 10 + static_cast<std::size_t>(c - '0');
    }
    ++mAt;
    for (skipSpace(); peek() != ']' && mAt < mText.size(); skipSpace()) {
      if (index-- == 0) return true;
      skipValue();
      skipSpace();
      if (peek() == ',') ++mAt;
    }
    return false;
  }
  // The decoded text of the string at mAt; mAt moves past it.
  std::string readString() {
    const std::size_t start = mAt;
    skipString();
    return nlohmann::json::parse(mText.substr(start, mAt - start)).get<std::string>();
  }
  void skipString() { mAt = PastString(mText, mAt); }
  void skipValue() {
    if (peek() == '"') return skipString();
    if (peek() == '{' || peek() == '[') return skipContainer();
    while (mAt < mText.size() && std::string_view(",}] \t\r\n").find(peek()) == std::string_view::npos) ++mAt;
  }
  void skipContainer() {
    int depth = 0;
    do {
      const char c = peek();
      if (c == '"') {
        skipString();
        continue;
      }
      if (c == '{' || c == '[') ++depth;
      if (c == '}' || c == ']') --depth;
      ++mAt;
    } while (depth > 0 && mAt < mText.size());
  }

  std::string_view mText;
  std::size_t mAt = 0;
  std::size_t mNameAt = std::string_view::npos;  // where the name of the member last entered starts
};

// The reference tokens of a pointer, unescaped ("~1" is "/", "~0" is "~").
std::vector<std::string> Tokens(const nlohmann::json::json_pointer& pointer) {
  std::vector<std::string> tokens;
  for (nlohmann::json::json_pointer rest = pointer; !rest.empty(); rest.pop_back()) {
    tokens.push_back(rest.back());
  }
  std::reverse(tokens.begin(), tokens.end());
  return tokens;
}

}  // namespace

TextPosition PositionOfOffset(std::string_view text, std::size_t offset) {
  TextPosition position;
  for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
    if (text[i] == '\n') {
      ++position.line;
      position.column = 1;
    } else if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
      ++position.column;
    }
  }
  return position;
}

std::size_t OffsetOfValue(std::string_view text, const nlohmann::json::json_pointer& pointer, bool memberName) {
  return Scanner(text).find(Tokens(pointer), memberName);
}

namespace {

// One pass over a JSON text: the members named so far in each open object.
class FaultScanner {
 public:
  explicit FaultScanner(std::string_view text) : mText(text) {}

  std::optional<JsonFault> run() {
    while (mAt < mText.size()) {
      const char c = mText[mAt];
      if (c == '{') {
        mObjects.emplace_back(std::set<std::string>()), mExpectName.push_back(true), ++mAt;
      } else if (c == '[') {
        mObjects.emplace_back(std::nullopt), mExpectName.push_back(false), ++mAt;
      } else if (c == '}' || c == ']') {
        if (!mObjects.empty()) mObjects.pop_back(), mExpectName.pop_back();
        ++mAt;
      } else if (c == ',') {
        if (!mExpectName.empty()) mExpectName.back() = mObjects.back().has_value();
        ++mAt;
      } else if (c == '"') {
        if (auto fault = string()) return fault;
      } else if (c == '-' || (c >= '0' && c <= '9')) {
        if (auto fault = number()) return fault;
      } else {
        ++mAt;
      }
    }
    return std::nullopt;
  }

 private:
  std::optional<JsonFault> string() {
    const std::size_t start = mAt;
    mAt = PastString(mText, mAt);
    if (mExpectName.empty() || !mExpectName.back()) return std::nullopt;
    mExpectName.back() = false;
    const std::string_view raw = mText.substr(start, std::min(mAt, mText.size()) - start);
    std::string name(raw);
    if (raw.find('\\') != std::string_view::npos) {
      try {
        name = nlohmann::json::parse(raw).get<std::string>();
      } catch (const nlohmann::json::exception&) {
        return std::nullopt;  // not a string; the parser says so
      }
    }
    if (mObjects.back()->insert(name).second) return std::nullopt;
    return JsonFault{start, "member " + std::string(raw) + " is named twice in one object"};
  }

  std::optional<JsonFault> number() {
    const std::size_t start = mAt;
    while (mAt < mText.size() && std::string_view("+-0123456789.eE").find(mText[mAt]) != std::string_view::npos) ++mAt;
    const std::string token(mText.substr(start, mAt - start));
    if (std::isfinite(std::strtod(token.c_str(), nullptr))) return std::nullopt;
    return JsonFault{start, "number " + token + " is too large"};
  }

  std::string_view mText;
  std::size_t mAt = 0;
  std::vector<std::optional<std::set<std::string>>> mObjects;  // nullopt for an array
  std::vector<bool> mExpectName;
};

}  // namespace

std::optional<JsonFault> FindJsonFault(std::string_view text) { return FaultScanner(text).run(); }
