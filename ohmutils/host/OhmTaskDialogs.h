// The suite's two error dialogs: a missing database engine, and mechatronics
// data that can't be synchronised because the versions don't match. Both are
// task dialogs of the host, defined in the suite's dialog definition file,
// with one button of their own ("Details", or the audit library's caption
// for it) that opens a web page about the error, and hyperlinks in their
// text that open their own targets. Each call shows its dialog modally and
// returns when it closes.
//
// Thread safety: the host's user interface thread only.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"

// Shows the missing database engine dialog. Shows nothing, and reports
// nothing, when its definition can't be loaded.
OHMUTILS_EXPORT void DisplayMissingDbEngineTaskDialog();

// Shows the version mismatch dialog with two placeholder pairs, (firstKey,
// firstValue) and (secondKey, secondValue), in this order. Shows nothing,
// and reports nothing, when its definition can't be loaded.
OHMUTILS_EXPORT void DisplayEMXVersionErrorTaskDlg(const CString& firstKey, const CString& firstValue,
                                                   const CString& secondKey, const CString& secondValue);
