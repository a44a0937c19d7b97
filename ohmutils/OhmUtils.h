// OhmUtils: the whole exported interface of libOhmUtils.so in one include.
// Each subsystem's headers can also be included on their own.
#pragma once

// Cross-reference engine
#include "ohmutils/xref/OhmCfgSetting.h"
#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmDsComponentPinOcc.h"
#include "ohmutils/xref/OhmDsOccID.h"
#include "ohmutils/xref/OhmDsOccurrence.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmNoRxUtilsSettingOverride.h"
#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"
#include "ohmutils/xref/OhmUtXrefEntity.h"
#include "ohmutils/xref/OhmUtXrefEntityFactory.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"
#include "ohmutils/xref/OhmUtXrefTableRows.h"
#include "ohmutils/xref/OhmUtXrefTextEntity.h"
#include "ohmutils/xref/ReplaceStringInString.h"

// Drawing access
#include "ohmutils/dwg/OhmDwgUtils.h"
#include "ohmutils/dwg/OhmUtilsTempIntVarOverride.h"

// Configuration stores
#include "ohmutils/config/CRegistryKey.h"
#include "ohmutils/config/ConfigurationXML.h"
#include "ohmutils/config/OhmCfgXML.h"
#include "ohmutils/config/OhmRegSetting.h"

// Text, path and date utilities
#include "ohmutils/util/OhmUtilsCharStrings.h"
#include "ohmutils/util/OhmUtilsDates.h"
#include "ohmutils/util/OhmUtilsFolders.h"
#include "ohmutils/util/OhmUtilsHostFolders.h"
#include "ohmutils/util/OhmUtilsPaths.h"
#include "ohmutils/util/OhmUtilsStringSplit.h"

// Host services
#include "ohmutils/host/OhmGetBuildVersion.h"
#include "ohmutils/host/OhmHostActions.h"
#include "ohmutils/host/OhmLispBridge.h"
#include "ohmutils/host/OhmOSVersion.h"
#include "ohmutils/host/OhmResDll.h"
#include "ohmutils/host/OhmTaskDialogs.h"
#include "ohmutils/host/OhmUtilsModule.h"
#include "ohmutils/host/OhmWaitCursor.h"
