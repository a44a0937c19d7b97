#include "zd/ZdValueNode.h"

#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>

#include "zd/ZdCodes.h"
#include "zd/ZdValueNode_testing.h"

namespace {

std::atomic<long> gLiveNodes{0};
std::atomic<long> gLiveStrings{0};
std::atomic<long> gAllocationsBeforeFailure{-1};

// False when the test seam says this allocation fails.
bool allocationAllowed() noexcept {
  long left = gAllocationsBeforeFailure.load();
  while (left >= 0) {
    if (left == 0) return false;
    if (gAllocationsBeforeFailure.compare_exchange_weak(left, left - 1)) return true;
  }
  return true;
}

bool inRange(int code, int low, int high) noexcept { return code >= low && code <= high; }

ZdValueKind dxfKindOf(int code) noexcept {
  if (inRange(code, 0, 9) || inRange(code, 100, 109) || inRange(code, 300, 369) || inRange(code, 390, 399) ||
      inRange(code, 410, 419) || inRange(code, 430, 439) || inRange(code, 470, 479) || code == 999 ||
      inRange(code, 1000, 1003) || inRange(code, 1005, 1009))
    return ZdValueKind::String;
  if (code == 1004) return ZdValueKind::Binary;
  if (inRange(code, 10, 39) || inRange(code, 110, 139) || inRange(code, 210, 239) || inRange(code, 1010, 1039))
    return ZdValueKind::Point;
  if (inRange(code, 40, 59) || inRange(code, 140, 149) || inRange(code, 460, 469) || inRange(code, 1040, 1059))
    return ZdValueKind::Real;
  if (inRange(code, 60, 79) || inRange(code, 170, 179) || inRange(code, 270, 299) || inRange(code, 370, 389) ||
      inRange(code, 400, 409) || inRange(code, 1060, 1070))
    return ZdValueKind::Short;
  if (inRange(code, 90, 99) || inRange(code, 420, 429) || inRange(code, 440, 459) || code == 1071)
    return ZdValueKind::Long;
  if (inRange(code, 160, 169)) return ZdValueKind::Int64;
  if (code == -1 || code == -2) return ZdValueKind::Name;
  return ZdValueKind::Unknown;
}

void freeString(char16_t* text) noexcept {
  if (!text) return;
  std::free(text);
  --gLiveStrings;
}

// Reads the value of `node`'s kind from the argument list into the node.
bool readValue(ZdValueNode* node, ZdValueKind kind, va_list& args) {
  switch (kind) {
    case ZdValueKind::String: {
      const char16_t* text = va_arg(args, const char16_t*);
      node->resval.rstring = zdutNewString(text);
      return !text || node->resval.rstring;
    }
    case ZdValueKind::Short:
      node->resval.rint = static_cast<short>(va_arg(args, int));
      return true;
    case ZdValueKind::Long:
      node->resval.rlong = va_arg(args, std::int32_t);
      return true;
    case ZdValueKind::Real:
      node->resval.rreal = va_arg(args, double);
      return true;
    case ZdValueKind::Int64:
      node->resval.mnInt64 = va_arg(args, std::int64_t);
      return true;
    case ZdValueKind::Point: {
      const double* point = va_arg(args, const double*);
      for (int i = 0; i < 3; ++i) node->resval.rpoint[i] = point ? point[i] : 0.0;
      return true;
    }
    case ZdValueKind::Name: {
      const std::int64_t* name = va_arg(args, const std::int64_t*);
      for (int i = 0; i < 2; ++i) node->resval.rlname[i] = name ? name[i] : 0;
      return true;
    }
    case ZdValueKind::Binary: {
      const int length = va_arg(args, int);
      const char* bytes = va_arg(args, const char*);
      if (length <= 0) return true;
      node->resval.rbinary.buf = static_cast<char*>(std::malloc(static_cast<std::size_t>(length)));
      if (!node->resval.rbinary.buf) return false;
      std::memcpy(node->resval.rbinary.buf, bytes, static_cast<std::size_t>(length));
      node->resval.rbinary.clen = static_cast<short>(length);
      return true;
    }
    case ZdValueKind::None:
      return true;
    case ZdValueKind::Unknown:
      return false;
  }
  return false;
}

}  // namespace

ZdValueKind zdValueKindOf(int typeCode) noexcept {
  switch (typeCode) {
    case RTSTR:
    case RTDXF0:
      return ZdValueKind::String;
    case RTSHORT:
      return ZdValueKind::Short;
    case RTLONG:
      return ZdValueKind::Long;
    case RTREAL:
    case RTANG:
    case RTORINT:
      return ZdValueKind::Real;
    case RTPOINT:
    case RT3DPOINT:
      return ZdValueKind::Point;
    case RTENAME:
    case RTPICKS:
      return ZdValueKind::Name;
    case RTINT64:
      return ZdValueKind::Int64;
    case RTNONE_TYPE:
    case RTLB:
    case RTLE:
    case RTDOTE:
    case RTNIL:
    case RTT:
    case RTVOID:
      return ZdValueKind::None;
    default:
      return dxfKindOf(typeCode);
  }
}

ZdValueNode* zdutNewRb(int typeCode) {
  if (!allocationAllowed()) return nullptr;
  auto* node = static_cast<ZdValueNode*>(std::calloc(1, sizeof(ZdValueNode)));
  if (!node) return nullptr;
  node->restype = static_cast<short>(typeCode);
  ++gLiveNodes;
  return node;
}

int zdutRelRb(ZdValueNode* chain) {
  while (chain) {
    ZdValueNode* next = chain->rbnext;
    const ZdValueKind kind = zdValueKindOf(chain->restype);
    if (kind == ZdValueKind::String) freeString(chain->resval.rstring);
    if (kind == ZdValueKind::Binary) std::free(chain->resval.rbinary.buf);
    std::free(chain);
    --gLiveNodes;
    chain = next;
  }
  return RTNORM;
}

char16_t* zdutNewString(const char16_t* text) {
  if (!text || !allocationAllowed()) return nullptr;
  const std::size_t length = std::char_traits<char16_t>::length(text);
  auto* copy = static_cast<char16_t*>(std::malloc((length + 1) * sizeof(char16_t)));
  if (!copy) return nullptr;
  std::char_traits<char16_t>::copy(copy, text, length + 1);
  ++gLiveStrings;
  return copy;
}

ZdValueNode* zdutBuildList(int typeCode, ...) {
  va_list args;
  va_start(args, typeCode);
  ZdValueNode* head = nullptr;
  ZdValueNode** tail = &head;
  for (int code = typeCode; code != 0; code = va_arg(args, int)) {
    const ZdValueKind kind = zdValueKindOf(code);
    ZdValueNode* node = kind == ZdValueKind::Unknown ? nullptr : zdutNewRb(code);
    if (node) {
      *tail = node;
      tail = &node->rbnext;
    }
    if (!node || !readValue(node, kind, args)) {
      va_end(args);
      zdutRelRb(head);
      return nullptr;
    }
  }
  va_end(args);
  return head;
}

int zdutLength(const ZdValueNode* chain) noexcept {
  int count = 0;
  for (; chain; chain = chain->rbnext) ++count;
  return count;
}

namespace zd_testing {

long liveValueNodes() noexcept { return gLiveNodes.load(); }
long liveValueStrings() noexcept { return gLiveStrings.load(); }
void failValueAllocationAfter(long okCalls) noexcept { gAllocationsBeforeFailure = okCalls; }

}  // namespace zd_testing
