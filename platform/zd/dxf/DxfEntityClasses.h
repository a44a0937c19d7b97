// The names of entity classes in DXF files and in the drawing database. A
// DXF entity type ("LINE", "INSERT") names one database class ("ZdDbLine",
// "ZdDbBlockReference"); types this build has no class of its own for get a
// descriptor made by name (ZdRxClass::forName), so the pair of functions
// below turns every upper-case type into a class and back unchanged.
//
// Free functions over constant tables; safe from any thread.
#pragma once

#include <string>
#include <string_view>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

class ZdRxClass;

// Whether a text can name an entity type: ASCII letters, digits, '_' and
// '-', at least one. Other texts are refused, as no class could be named by them.
bool isDxfTypeName(std::string_view dxfType);

// The database class name of a DXF entity type: "LINE" -> "ZdDbLine",
// "LWPOLYLINE" -> "ZdDbPolyline"; for a type without a listed class, "ZdDb"
// and the type with only its first letter upper case. Empty for a text that
// is no type name (isDxfTypeName).
std::u16string dxfClassNameOf(std::string_view dxfType);

// The DXF entity type of a database class, the inverse of dxfClassNameOf:
// "ZdDbLine" -> "LINE"; the upper-cased name for a class not named "ZdDb...".
std::string dxfTypeOf(const ZdRxClass& cls);

// Whether a type is one of the entity types that DXF itself defines
// ("LINE", "MTEXT", ...); other types are some application's own.
bool isStandardDxfEntityType(std::string_view dxfType);

// The descriptor of the class of a DXF entity type that the database has no
// class of its own for (a ZdDbEntity made by name); null for a text that is
// no type name.
const ZdRxClass* dxfEntityClassOf(std::string_view dxfType);

OHM_PLATFORM_API_END
