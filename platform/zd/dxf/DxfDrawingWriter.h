// Writing a drawing database as ASCII DXF text: the header (version, code
// page, handle seed), the block records, the blocks with their entities, the
// entities of model and paper space, the layout dictionary with its layouts,
// and every entity's handle, layer and xdata. R12 (AC1009) files get R12's
// own simple form without the block record table and layouts.
//
// ZdDbDatabase::dxfOut writes this text to a file; fuzzing and tests call it
// directly. The database is only read.
#pragma once

#include <string>
#include <string_view>

#include "OhmPlatformExport.h"
#include "zd/ZdErrorStatus.h"

OHM_PLATFORM_API_BEGIN

class ZdDbDatabase;

// The DXF text of `database` as a file of `version` ("AC1009", "AC1012" to
// "AC1032") into `text`. eOk; eInvalidInput for another version,
// eOutOfMemory when the layout dictionary can't be walked, `text` untouched.
Zeda::ErrorStatus writeDxfDrawing(const ZdDbDatabase& database, std::string_view version, std::string& text);

OHM_PLATFORM_API_END
