#include "project/DrawingComponents.h"

#include <charconv>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "win/Utf8.h"
#include "win/fs/PathMapping.h"
#include "zd/ZdWcMatch.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbBlockTableRecord.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbDictionary.h"
#include "zd/db/ZdDbText.h"
#include "zd/dxf/DxfDrawingReader.h"

namespace {

using Kind = OhmDwgUtils::EntityType;

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) text.remove_suffix(1);
  return text;
}

// The y of an insert's point (group 20) in the groups the reader kept; 0 when absent.
double InsertionY(const ZdDbEntity& entity) {
  std::string_view rest = entity.keptDxfGroups();
  while (!rest.empty()) {
    const std::size_t codeEnd = rest.find('\n');
    if (codeEnd == std::string_view::npos) break;
    const std::string_view code = Trimmed(rest.substr(0, codeEnd));
    rest.remove_prefix(codeEnd + 1);
    const std::size_t valueEnd = std::min(rest.find('\n'), rest.size());
    const std::string_view value = Trimmed(rest.substr(0, valueEnd));
    rest.remove_prefix(std::min(valueEnd + 1, rest.size()));
    if (code != "20") continue;
    double y = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), y);
    return error == std::errc() ? y : 0.0;
  }
  return 0.0;
}

std::int32_t GridLine(double y, const LineGrid& grid) {
  if (!(grid.spacing > 0)) return grid.first;
  const double line = std::floor((grid.top - y) / grid.spacing);
  return grid.first + static_cast<std::int32_t>(std::max(0.0, std::min(line, 1e6)));
}

AttributeList AttributesOf(const ZdDbDatabase& database, const ZdDbBlockReference& reference) {
  AttributeList attributes;
  for (ZdDbObjectId id : reference.attributeIds()) {
    const auto* attribute = dynamic_cast<const ZdDbAttribute*>(database.objectAt(id));
    if (!attribute || attribute->isErased() || !attribute->tagConst()) continue;
    attributes.emplace_back(attribute->tagConst(), attribute->textStringConst());
  }
  return attributes;
}

std::u16string UpperAscii(std::u16string text) {
  for (char16_t& c : text) {
    if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - u'a' + u'A');
  }
  return text;
}

const std::u16string* Find(const AttributeList& attributes, const std::u16string& tag) {
  for (const auto& [name, value] : attributes) {
    if (UpperAscii(name) == UpperAscii(tag)) return &value;
  }
  return nullptr;
}

// The first attribute whose tag matches `pattern`, as the library matches tags.
const std::u16string* Matching(const AttributeList& attributes, const std::u16string& pattern) {
  for (const auto& [name, value] : attributes) {
    if (zdutWcMatchEx(name.c_str(), pattern.c_str(), true)) return &value;
  }
  return nullptr;
}

// The kind a contact's block name says: Form C, NC or NO; empty when none.
std::u16string KindOfBlockName(const std::u16string& blockName) {
  const std::u16string name = UpperAscii(blockName);
  if (name.find(u"NONC") != std::u16string::npos || name.find(u"NCNO") != std::u16string::npos) return u"NONC";
  if (name.find(u"NC") != std::u16string::npos) return u"NC";
  if (name.find(u"NO") != std::u16string::npos) return u"NO";
  return u"";
}

// TERM01, TERM02, ...: each pin's number (without leading zeros) and its text, by number.
std::vector<std::pair<std::u16string, std::u16string>> PinsOf(const AttributeList& attributes,
                                                              const std::u16string& prefix) {
  std::map<int, std::u16string> byNumber;
  for (const auto& [name, value] : attributes) {
    if (name.size() <= prefix.size() || UpperAscii(name.substr(0, prefix.size())) != UpperAscii(prefix)) continue;
    const std::string digits = Utf16ToUtf8(name.substr(prefix.size()));
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() || number <= 0 || value.empty()) continue;
    byNumber.emplace(number, value);
  }
  std::vector<std::pair<std::u16string, std::u16string>> pins;
  for (const auto& [number, text] : byNumber) pins.emplace_back(Utf8ToUtf16(std::to_string(number)), text);
  return pins;
}

SymbolPlace PlaceOf(const ZdDbBlockReference& reference, const AttributeList& attributes, int sheet,
                    const ProjectConventions& conventions) {
  SymbolPlace place;
  place.sheetInDrawing = sheet;
  if (const std::u16string* given = Find(attributes, conventions.referenceAttribute)) place.reference = *given;
  if (place.reference.empty()) place.gridLine = GridLine(InsertionY(reference), conventions.grid);
  return place;
}

std::u16string BlockNameOf(const ZdDbDatabase& database, const ZdDbBlockReference& reference) {
  const auto* record = dynamic_cast<const ZdDbBlockTableRecord*>(database.objectAt(reference.blockTableRecord()));
  return record ? record->name() : reference.undefinedBlockName();
}

void AddCoil(const ZdDbDatabase& database, const ZdDbBlockReference& reference, AttributeList attributes, int sheet,
             const ProjectConventions& conventions, DrawingComponents& components) {
  CoilSymbol coil;
  coil.handle = reference.objectHandle().value();
  const std::u16string* tag = Matching(attributes, conventions.coilTagPattern);
  if (!tag || tag->empty()) {
    components.problems.push_back({coil.handle, 0, "a coil without a tag"});
    return;
  }
  coil.tag = *tag;
  coil.blockName = BlockNameOf(database, reference);
  coil.place = PlaceOf(reference, attributes, sheet, conventions);
  coil.attributes = std::move(attributes);
  coil.xdata.reset(reference.xData(), [](ZdValueNode* chain) { zdutRelRb(chain); });
  components.coils.push_back(std::move(coil));
}

void AddContact(const ZdDbDatabase& database, const ZdDbBlockReference& reference, const AttributeList& attributes,
                int sheet, const ProjectConventions& conventions, DrawingComponents& components) {
  ContactSymbol contact;
  contact.handle = reference.objectHandle().value();
  const std::u16string* coil = Matching(attributes, conventions.contactCoilPattern);
  if (!coil || coil->empty()) {
    components.problems.push_back({contact.handle, 0, "a contact that names no coil"});
    return;
  }
  contact.coilTag = *coil;
  contact.blockName = BlockNameOf(database, reference);
  const std::u16string* kind = Find(attributes, conventions.kindAttribute);
  contact.kind = UpperAscii(kind && !kind->empty() ? *kind : KindOfBlockName(contact.blockName));
  if (contact.kind == u"NCNO") contact.kind = u"NONC";
  contact.occurrenceType = conventions.occurrenceType;
  contact.place = PlaceOf(reference, attributes, sheet, conventions);
  contact.pins = PinsOf(attributes, conventions.pinPrefix);
  if (const std::u16string* xref = Find(attributes, u"XREF")) contact.xref = *xref;
  components.contacts.push_back(std::move(contact));
}

// The block records of the drawing's layouts in tab order, model space first.
std::vector<ZdDbObjectId> LayoutBlocks(const ZdDbDatabase& database) {
  std::multimap<std::int32_t, ZdDbObjectId> byTab;
  const auto* layouts = dynamic_cast<const ZdDbDictionary*>(database.objectAt(database.layoutDictionaryId()));
  std::unique_ptr<ZdDbDictionaryIterator> entry(layouts ? layouts->newIterator() : nullptr);
  for (; entry && !entry->done(); entry->next()) {
    const auto* layout = dynamic_cast<const ZdDbLayout*>(database.objectAt(entry->objectId()));
    if (layout && layout->getBlockTableRecordId() != database.modelSpaceId()) {
      byTab.emplace(layout->getTabOrder(), layout->getBlockTableRecordId());
    }
  }
  std::vector<ZdDbObjectId> blocks{database.modelSpaceId()};
  for (const auto& [tab, block] : byTab) blocks.push_back(block);
  return blocks;
}

}  // namespace

void CollectComponents(const ZdDbDatabase& database, const ProjectConventions& conventions,
                       DrawingComponents& components) {
  for (ZdDbObjectId blockId : LayoutBlocks(database)) {
    const auto* record = dynamic_cast<const ZdDbBlockTableRecord*>(database.objectAt(blockId));
    ZdDbBlockTableRecordIterator* raw = nullptr;
    if (!record || record->newIterator(raw) != Zeda::eOk) continue;
    std::unique_ptr<ZdDbBlockTableRecordIterator> it(raw);
    bool holdsEntities = false;
    for (; !it->done(); it->step()) {
      holdsEntities = true;
      ZdDbObjectId id;
      it->getEntityId(id);
      const auto* reference = dynamic_cast<const ZdDbBlockReference*>(database.objectAt(id));
      if (!reference) continue;
      const Kind kind = OhmDwgUtils::getOhmObjectType(reference);
      if (kind != OhmDwgUtils::EntityTag1 && kind != OhmDwgUtils::EntityTag2) continue;
      AttributeList attributes = AttributesOf(database, *reference);
      if (kind == OhmDwgUtils::EntityTag1) {
        AddCoil(database, *reference, std::move(attributes), components.sheets, conventions, components);
      } else {
        AddContact(database, *reference, attributes, components.sheets, conventions, components);
      }
    }
    if (holdsEntities) ++components.sheets;
  }
}

DrawingComponents ReadDrawingComponents(const std::string& file, const ProjectConventions& conventions, bool recover) {
  DrawingComponents components;
  components.file = file;
  const std::filesystem::path absolute = std::filesystem::absolute(file).lexically_normal();
  components.path = PosixPathToWindows(absolute.string());
  components.name = Utf8ToUtf16(absolute.stem().string());
  auto database = std::make_unique<ZdDbDatabase>();
  DxfReadReport report;
  if (readDxfDrawingFile(file, *database, {recover}, &report) != Zeda::eOk) {
    components.problems.push_back({0, report.line, report.problem.empty() ? "can't read the drawing" : report.problem});
    return components;
  }
  components.readable = true;
  for (const std::string& block : report.undefinedBlocks) {
    components.problems.push_back({0, 0, "block \"" + block + "\" is referred to but never defined"});
  }
  CollectComponents(*database, conventions, components);
  return components;
}
