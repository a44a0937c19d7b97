// Result status codes of host calls and type codes of ZdValueNode lists.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

// Status of host calls.
inline constexpr int RTNORM = 5100;    // normal completion
inline constexpr int RTNONE = 5000;    // no result
inline constexpr int RTCAN = -5002;    // cancelled by the user
inline constexpr int RTREJ = -5003;    // request rejected (bad name, wrong type, not allowed now)
inline constexpr int RTERROR = -5001;  // error

// Type codes of value list nodes: host values.
inline constexpr short RTNONE_TYPE = 5000;  // no value
inline constexpr short RTREAL = 5001;       // double
inline constexpr short RTPOINT = 5002;      // 2D point (x, y)
inline constexpr short RTSHORT = 5003;      // 16-bit integer
inline constexpr short RTANG = 5004;        // angle, double
inline constexpr short RTSTR = 5005;        // string
inline constexpr short RTENAME = 5006;      // entity name
inline constexpr short RTPICKS = 5007;      // selection set name
inline constexpr short RTORINT = 5008;      // orientation, double
inline constexpr short RT3DPOINT = 5009;    // 3D point
inline constexpr short RTLONG = 5010;       // 32-bit integer
inline constexpr short RTVOID = 5014;       // blank symbol
inline constexpr short RTLB = 5016;         // list begin
inline constexpr short RTLE = 5017;         // list end
inline constexpr short RTDOTE = 5018;       // dotted pair
inline constexpr short RTNIL = 5019;        // nil
inline constexpr short RTDXF0 = 5020;       // group code 0 in a DXF list
inline constexpr short RTT = 5021;          // T, true
inline constexpr short RTRESBUF = 5023;     // nested value list
inline constexpr short RTINT64 = 5031;      // 64-bit integer

// Type codes of value list nodes: xdata group codes.
inline constexpr short XD_STRING = 1000;     // text
inline constexpr short XD_APPNAME = 1001;    // application name
inline constexpr short XD_CONTROL = 1002;    // control string "{" or "}"
inline constexpr short XD_LAYERNAME = 1003;  // layer name
inline constexpr short XD_BINARY = 1004;     // binary chunk
inline constexpr short XD_HANDLE = 1005;     // database handle, as hex text
inline constexpr short XD_POINT = 1010;      // 3D point (1010-1013)
inline constexpr short XD_REAL = 1040;       // real (1040-1042)
inline constexpr short XD_SHORT = 1070;      // 16-bit integer
inline constexpr short XD_LONG = 1071;       // 32-bit integer

OHM_PLATFORM_API_END
