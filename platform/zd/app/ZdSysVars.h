// The host's system variables: named values of the drawing session that
// commands read and set (CMDECHO, FILEDIA, DWGTITLED, ...). Names compare
// ignoring case. Each variable has a fixed type: a 16-bit integer (RTSHORT),
// a 32-bit integer (RTLONG), a real (RTREAL) or a string (RTSTR); some are
// read-only.
//
// Thread safety: the host allows these calls on its main thread; the stand-in
// guards its table with a lock all the same.
#pragma once

#include "OhmPlatformExport.h"
#include "zd/ZdValueNode.h"

OHM_PLATFORM_API_BEGIN

// Fills `result` (type and value; a string value is allocated for the node,
// freed with it by zdutRelRb). RTNORM; RTREJ for an unknown name or a null
// argument, with `result` untouched.
int zdedGetVar(const char16_t* name, ZdValueNode* result);

// Sets the variable from the first node of `value`, which stays the caller's.
// RTNORM; RTREJ for an unknown name, a read-only variable, a null argument or
// a node whose type does not fit the variable's (a 16-bit variable takes
// RTSHORT only).
int zdedSetVar(const char16_t* name, const ZdValueNode* value);

OHM_PLATFORM_API_END
