#include "zd/dxf/DxfXData.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "zd/ZdCodes.h"
#include "zd/dxf/DxfValues.h"

namespace {

bool isPointCode(int code) { return code >= 1010 && code <= 1013; }
bool isRealCode(int code) { return code >= 1040 && code <= 1042; }
bool isTextCode(int code) { return (code >= 1000 && code <= 1003) || code == 1005; }

int hexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

// A 1004 value: pairs of hex digits, at most 127 bytes. False when it isn't one.
bool readBinary(std::string_view hex, ZdValueNode& node) {
  if (hex.size() % 2 != 0 || hex.size() / 2 > 127) return false;
  node.resval.rbinary.clen = static_cast<short>(hex.size() / 2);
  if (hex.empty()) return true;
  auto* bytes = static_cast<char*>(std::malloc(hex.size() / 2));
  if (!bytes) return node.resval.rbinary.clen = 0, false;
  node.resval.rbinary.buf = bytes;
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    const int high = hexDigit(hex[i]), low = hexDigit(hex[i + 1]);
    if (high < 0 || low < 0) return false;
    bytes[i / 2] = static_cast<char>(high * 16 + low);
  }
  return true;
}

// Reads the value of the tag at `at` (and, for a point, the tags after it)
// into `node`; moves `at` past what it used. False for a bad value.
bool readValue(std::span<const DxfTag> tags, std::size_t& at, const DxfTextCodec& codec, ZdValueNode& node) {
  const DxfTag& tag = tags[at++];
  if (isTextCode(tag.code) || tag.code == XD_APPNAME) {
    node.resval.rstring = zdutNewString(codec.decode(tag.value).c_str());
    return node.resval.rstring != nullptr;
  }
  if (tag.code == XD_BINARY) return readBinary(tag.value, node);
  if (tag.code == XD_SHORT || tag.code == XD_LONG) {
    const auto number = parseDxfInteger(tag.value);
    const std::int64_t low = tag.code == XD_SHORT ? -32768 : INT32_MIN, high = tag.code == XD_SHORT ? 32767 : INT32_MAX;
    if (!number || *number < low || *number > high) return false;
    if (tag.code == XD_SHORT)
      node.resval.rint = static_cast<short>(*number);
    else
      node.resval.rlong = static_cast<std::int32_t>(*number);
    return true;
  }
  if (isRealCode(tag.code)) {
    const auto real = parseDxfReal(tag.value);
    node.resval.rreal = real.value_or(0.0);
    return real.has_value();
  }
  // A point: x here, y (code + 10) next, z (code + 20) when present.
  for (int axis = 0; axis < 3; ++axis) {
    if (axis > 0 && (at >= tags.size() || tags[at].code != tag.code + 10 * axis)) return axis == 2;
    const auto real = parseDxfReal(axis == 0 ? tag.value : tags[at++].value);
    if (!real) return false;
    node.resval.rpoint[axis] = *real;
  }
  return true;
}

bool isXDataCode(int code) {
  return code == XD_APPNAME || isTextCode(code) || code == XD_BINARY || isPointCode(code) || isRealCode(code) ||
         code == XD_SHORT || code == XD_LONG;
}

std::string hexOf(const ZdBinaryChunk& chunk) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string hex;
  for (short i = 0; i < chunk.clen; ++i) {
    const auto byte = static_cast<unsigned char>(chunk.buf[i]);
    hex += kDigits[byte >> 4];
    hex += kDigits[byte & 15];
  }
  return hex;
}

}  // namespace

Zeda::ErrorStatus readDxfXData(std::span<const DxfTag> tags, const DxfTextCodec& codec, ZdValueNode*& chain) {
  chain = nullptr;
  if (!tags.empty() && tags.front().code != XD_APPNAME) return Zeda::eBadDxfFile;
  ZdValueNode** tail = &chain;
  for (std::size_t at = 0; at < tags.size();) {
    if (!isXDataCode(tags[at].code)) return zdutRelRb(chain), chain = nullptr, Zeda::eBadDxfFile;
    ZdValueNode* node = zdutNewRb(tags[at].code);
    if (!node) return zdutRelRb(chain), chain = nullptr, Zeda::eOutOfMemory;
    *tail = node;
    tail = &node->rbnext;
    const bool isText = isTextCode(tags[at].code) || tags[at].code == XD_APPNAME;
    if (!readValue(tags, at, codec, *node)) {
      zdutRelRb(chain);
      chain = nullptr;
      return isText ? Zeda::eOutOfMemory : Zeda::eBadDxfFile;
    }
  }
  return Zeda::eOk;
}

const DxfTag* findBadDxfXData(std::span<const DxfTag> tags) {
  if (!tags.empty() && tags.front().code != XD_APPNAME) return &tags.front();
  for (std::size_t at = 0; at < tags.size();) {
    const DxfTag& tag = tags[at++];
    const int code = tag.code;
    if (!isXDataCode(code)) return &tag;
    if (code == XD_BINARY) {
      const bool hex = tag.value.size() % 2 == 0 && tag.value.size() / 2 <= 127 &&
                       std::all_of(tag.value.begin(), tag.value.end(), [](char c) { return hexDigit(c) >= 0; });
      if (!hex) return &tag;
    } else if (code == XD_SHORT || code == XD_LONG) {
      const auto number = parseDxfInteger(tag.value);
      const std::int64_t low = code == XD_SHORT ? -32768 : INT32_MIN, high = code == XD_SHORT ? 32767 : INT32_MAX;
      if (!number || *number < low || *number > high) return &tag;
    } else if (isRealCode(code) || isPointCode(code)) {
      if (!parseDxfReal(tag.value)) return &tag;
      // A point's y must follow its x; its z may.
      for (int axis = 1; isPointCode(code) && axis < 3; ++axis) {
        if (at >= tags.size() || tags[at].code != code + 10 * axis) {
          if (axis == 1) return &tag;
          break;
        }
        if (!parseDxfReal(tags[at++].value)) return &tags[at - 1];
      }
    }
  }
  return nullptr;
}

std::string encodeDxfText(const DxfTextCodec& codec, std::u16string_view text) {
  std::string raw = codec.encode(text);
  if (raw.find_first_of("\r\n") == std::string::npos) return raw;
  std::string escaped;
  for (const char byte : raw) {
    if (byte == '\n')
      escaped += "\\U+000A";
    else if (byte == '\r')
      escaped += "\\U+000D";
    else
      escaped += byte;
  }
  return escaped;
}

void appendDxfXData(std::string& out, const ZdValueNode* chain, const DxfTextCodec& codec) {
  for (; chain; chain = chain->rbnext) {
    const int code = chain->restype;
    if (isTextCode(code) || code == XD_APPNAME) {
      appendDxfTag(out, code, encodeDxfText(codec, chain->resval.rstring ? chain->resval.rstring : u""));
    } else if (code == XD_BINARY) {
      appendDxfTag(out, code, hexOf(chain->resval.rbinary));
    } else if (code == XD_SHORT) {
      appendDxfTag(out, code, std::to_string(chain->resval.rint));
    } else if (code == XD_LONG) {
      appendDxfTag(out, code, std::to_string(chain->resval.rlong));
    } else if (isRealCode(code)) {
      appendDxfTag(out, code, formatDxfReal(chain->resval.rreal));
    } else if (isPointCode(code)) {
      for (int axis = 0; axis < 3; ++axis)
        appendDxfTag(out, code + 10 * axis, formatDxfReal(chain->resval.rpoint[axis]));
    }
  }
}
