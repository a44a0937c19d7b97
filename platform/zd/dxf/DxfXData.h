// Extended data (xdata) in DXF files: the tags from an object's first 1001
// (application name) to its end, as the value chain ZdDbObject::setXData
// takes and ZdDbObject::xData gives: 1000-1003 and 1005 texts, 1004 binary
// chunks (hexadecimal in the file), 1010-1013 points (x, then y at code+10,
// z at code+20), 1040-1042 reals, 1070 16-bit and 1071 32-bit integers.
//
// Free functions; the chain a read gives is the caller's, released with
// zdutRelRb.
#pragma once

#include <span>
#include <string>

#include "OhmPlatformExport.h"
#include "zd/ZdErrorStatus.h"
#include "zd/ZdValueNode.h"
#include "zd/dxf/DxfTags.h"
#include "zd/dxf/DxfTextCodec.h"

OHM_PLATFORM_API_BEGIN

// The chain of the xdata tags `tags` (the first a 1001); null for none. eOk;
// eBadDxfFile (a code that is no xdata code, a value that does not parse, a
// point without its y) or eOutOfMemory, with null and nothing left allocated.
Zeda::ErrorStatus readDxfXData(std::span<const DxfTag> tags, const DxfTextCodec& codec, ZdValueNode*& chain);

// The first tag of `tags` (the first a 1001) that the read above refuses as
// bad; null when every one reads. Allocates nothing.
const DxfTag* findBadDxfXData(std::span<const DxfTag> tags);

// Appends the tags of `chain` to `out`; nodes of other types are left out.
void appendDxfXData(std::string& out, const ZdValueNode* chain, const DxfTextCodec& codec);

// The raw value of a text for a DXF file: encoded by `codec`, with line
// breaks as "\U+000A" / "\U+000D" escapes, since a value is one line.
std::string encodeDxfText(const DxfTextCodec& codec, std::u16string_view text);

OHM_PLATFORM_API_END
