// ZdValueNode: one node of the host's typed value lists, which carry xdata,
// system variable values and Lisp calls and replies. A chain is linked by
// rbnext and ends with null.
//
// Ownership: whoever builds or receives a chain releases it with zdutRelRb,
// which frees every node and every string the nodes hold. Strings in nodes
// are allocated with zdutNewString (or by the list functions) and belong to
// their node. The host counts live nodes (see ZdValueNode_testing.h), so a
// test can see that every path released what it took.
//
// What value a type code carries (ZdCodes.h):
//   rstring  RTSTR, 1000-1009 (XD_STRING, XD_APPNAME, XD_CONTROL, XD_LAYERNAME, XD_HANDLE, ...)
//   rint     RTSHORT, 1060-1070 (XD_SHORT)
//   rlong    RTLONG, 1071
//   rreal    RTREAL, RTANG, RTORINT, 1040-1042
//   rpoint   RTPOINT, RT3DPOINT, 1010-1013
//   rlname   RTENAME, RTPICKS
//   rbinary  XD_BINARY
//   mnInt64  RTINT64
//   nothing  RTLB, RTLE, RTDOTE, RTNIL, RTT, RTVOID, RTNONE_TYPE
// and the DXF group code ranges likewise (0-9 text, 10-39 points, 40-59 reals, ...).
#pragma once

#include <cstdint>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

struct ZdBinaryChunk {
  short clen;
  char* buf;  // owned by the node
};

union ZdValue {
  double rreal;
  double rpoint[3];
  short rint;
  std::int32_t rlong;
  std::int64_t mnInt64;
  char16_t* rstring;  // owned by the node; may be null
  std::int64_t rlname[2];
  ZdBinaryChunk rbinary;
};

struct ZdValueNode {
  ZdValueNode* rbnext;
  short restype;
  ZdValue resval;
};

// What kind of value a type code carries.
enum class ZdValueKind { Unknown, None, String, Short, Long, Real, Point, Name, Binary, Int64 };
ZdValueKind zdValueKindOf(int typeCode) noexcept;

// A new node of `typeCode`, value zeroed (null string), rbnext null. Null only
// when allocation fails or the test seam says so.
ZdValueNode* zdutNewRb(int typeCode);

// Releases a whole chain and every string and binary chunk it owns. Null is
// allowed. Always RTNORM.
int zdutRelRb(ZdValueNode* chain);

// A new copy of `text` for a node's rstring, freed by zdutRelRb with its node.
// Null for a null text. Allocated the host's way (not with new[]).
char16_t* zdutNewString(const char16_t* text);

// A new chain from pairs of type code and value, ended by a type code of 0.
// Values by kind: String const char16_t* (copied), Short int, Long int32_t,
// Real double, Point const double* (3 copied), Name const int64_t* (2 copied),
// Int64 int64_t, Binary int length then const char*; no value for None.
// RTDXF0 takes a string. Null for an empty list, an unknown type code, or a
// failed allocation; nothing is left allocated then.
ZdValueNode* zdutBuildList(int typeCode, ...);

// Number of nodes in the chain.
int zdutLength(const ZdValueNode* chain) noexcept;

OHM_PLATFORM_API_END
