#include "zd/dxf/DxfEntityClasses.h"

#include <algorithm>
#include <array>
#include <utility>

#include "zd/db/ZdDbObject.h"
#include "zd/db/ZdRxClass.h"

namespace {

// Types whose class name is not "ZdDb" + the capitalised type.
constexpr std::array<std::pair<std::string_view, std::u16string_view>, 12> kNamedClasses{{
    {"INSERT", u"ZdDbBlockReference"},
    {"INSERT", u"ZdDbMInsertBlock"},  // found by class only: "INSERT" names the first
    {"ACAD_TABLE", u"ZdDbTable"},
    {"ATTRIB", u"ZdDbAttribute"},
    {"ATTDEF", u"ZdDbAttributeDefinition"},
    {"LWPOLYLINE", u"ZdDbPolyline"},
    {"POLYLINE", u"ZdDb2dPolyline"},
    {"MTEXT", u"ZdDbMText"},
    {"3DFACE", u"ZdDbFace"},
    {"3DSOLID", u"ZdDb3dSolid"},
    {"VIEWPORT", u"ZdDbViewport"},
    {"HATCH", u"ZdDbHatch"},
}};

constexpr std::u16string_view kPrefix = u"ZdDb";

// The entity types of the DXF reference's ENTITIES section.
constexpr std::array<std::string_view, 48> kStandardTypes{"3DFACE",      "3DSOLID",    "ACAD_PROXY_ENTITY",
                                                          "ACAD_TABLE",  "ARC",        "ARCALIGNEDTEXT",
                                                          "ATTDEF",      "ATTRIB",     "BODY",
                                                          "CIRCLE",      "DIMENSION",  "ELLIPSE",
                                                          "HATCH",       "HELIX",      "IMAGE",
                                                          "INSERT",      "LEADER",     "LIGHT",
                                                          "LINE",        "LWPOLYLINE", "MESH",
                                                          "MLEADER",     "MLINE",      "MTEXT",
                                                          "MULTILEADER", "OLEFRAME",   "OLE2FRAME",
                                                          "POINT",       "POLYLINE",   "RAY",
                                                          "REGION",      "RTEXT",      "SECTION",
                                                          "SEQEND",      "SHAPE",      "SOLID",
                                                          "SPLINE",      "SUN",        "SURFACE",
                                                          "TABLE",       "TEXT",       "TOLERANCE",
                                                          "TRACE",       "UNDERLAY",   "VERTEX",
                                                          "VIEWPORT",    "WIPEOUT",    "XLINE"};

char16_t upper(char16_t unit) {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}
char16_t lower(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
}

bool isTypeCharacter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
}

}  // namespace

bool isDxfTypeName(std::string_view dxfType) {
  return !dxfType.empty() && std::all_of(dxfType.begin(), dxfType.end(), isTypeCharacter);
}

std::u16string dxfClassNameOf(std::string_view dxfType) {
  if (!isDxfTypeName(dxfType)) return {};
  for (const auto& [type, name] : kNamedClasses)
    if (type == dxfType) return std::u16string(name);
  std::u16string name(kPrefix);
  for (const char byte : dxfType) name += lower(static_cast<unsigned char>(byte));
  name[kPrefix.size()] = upper(name[kPrefix.size()]);
  return name;
}

std::string dxfTypeOf(const ZdRxClass& cls) {
  const std::u16string_view name = cls.name();
  for (const auto& [type, className] : kNamedClasses)
    if (className == name) return std::string(type);
  const std::u16string_view rest = name.substr(0, kPrefix.size()) == kPrefix ? name.substr(kPrefix.size()) : name;
  std::string type;
  for (const char16_t unit : rest) type += static_cast<char>(upper(unit) & 0xFF);
  return type;
}

bool isStandardDxfEntityType(std::string_view dxfType) {
  return std::find(kStandardTypes.begin(), kStandardTypes.end(), dxfType) != kStandardTypes.end();
}

const ZdRxClass* dxfEntityClassOf(std::string_view dxfType) {
  if (!isDxfTypeName(dxfType)) return nullptr;
  return ZdRxClass::forName(dxfClassNameOf(dxfType), ZdDbEntity::desc());
}
