// Test seam of the system variables: not host API.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

using SysVarValue = std::variant<short, std::int32_t, double, std::u16string>;

// Defines (or redefines) a variable with its type and value.
void defineSysVar(const std::u16string& name, const SysVarValue& value, bool readOnly = false);
// Back to the host's initial variables and values; clears the faults below.
void resetSysVars();
// The next zdedGetVar / zdedSetVar call gives RTERROR and changes nothing.
void failNextGetVar();
void failNextSetVar();

}  // namespace zd_testing

OHM_PLATFORM_API_END
