// The suite's named text settings in the current user's registry, below the
// host's product root key: key "<product root>\Settings\<section>", value
// `name`, type REG_SZ. Stateless free functions; no message, nothing thrown.
// Thread safety: each call opens and closes keys of its own, so calls may run
// on several threads at once.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"
#include "win/WinDef.h"

// Reads setting `name` of `section` into `value`. False, with `value` as it
// was, for a null argument or a section that isn't there; false also for a
// value that is missing, isn't text or is longer than 1998 units.
OHMUTILS_EXPORT bool OhmGetRegSetting(LPCWSTR section, LPCWSTR name, CString& value);

// Writes `value` as setting `name` of `section`, making the section's keys
// when they are missing. False for a null argument or when the key can't be
// opened or made or the value can't be written.
OHMUTILS_EXPORT bool OhmSetRegSetting(LPCWSTR section, LPCWSTR name, LPCWSTR value);
