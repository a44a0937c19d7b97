#include "project/DrawingComponents.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <typeinfo>

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

// Where the line that `text` begins with ends: at its '\n', or at the end of
// `text`. A plain loop: group lines are a few characters long, shorter than
// a call to the library's search is worth.
std::size_t LineEnd(std::string_view text) {
  std::size_t end = 0;
  while (end < text.size() && text[end] != '\n') ++end;
  return end;
}

// The y of an insert's point (group 20) in the groups the reader kept; 0 when absent.
double InsertionY(const ZdDbEntity& entity) {
  std::string_view rest = entity.keptDxfGroups();
  while (!rest.empty()) {
    const std::size_t codeEnd = LineEnd(rest);
    if (codeEnd == rest.size()) break;
    const std::string_view code = Trimmed(rest.substr(0, codeEnd));
    rest.remove_prefix(codeEnd + 1);
    const std::size_t valueEnd = LineEnd(rest);
    const std::string_view value = rest.substr(0, valueEnd);
    rest.remove_prefix(std::min(valueEnd + 1, rest.size()));
    if (code != "20") continue;
    const std::string_view number = Trimmed(value);
    double y = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), y);
    return error == std::errc() ? y : 0.0;
  }
  return 0.0;
}

std::int32_t GridLine(double y, const LineGrid& grid) {
  if (!(grid.spacing > 0)) return grid.first;
  const double line = std::floor((grid.top - y) / grid.spacing);
  return grid.first + static_cast<std::int32_t>(std::max(0.0, std::min(line, 1e6)));
}

// `object` as a T when it is one. Nearly all the objects met are exactly T,
// which one comparison of their type tells; others take the general cast.
template <class T>
const T* As(const ZdDbObject* object) {
  if (object && typeid(*object) == typeid(T)) return static_cast<const T*>(object);
  return dynamic_cast<const T*>(object);
}

// A reference's attributes as tag and value, in drawing order, borrowed from
// the database: views that hold while it lives.
using AttributeViews = std::vector<std::pair<std::u16string_view, std::u16string_view>>;

void ReadAttributes(const ZdDbDatabase& database, const ZdDbBlockReference& reference, AttributeViews& attributes) {
  attributes.clear();
  for (ZdDbObjectId id : reference.attributeIds()) {
    const auto* attribute = As<ZdDbAttribute>(database.objectAt(id));
    if (!attribute || attribute->isErased() || !attribute->tagConst()) continue;
    const char16_t* value = attribute->textStringConst();
    attributes.emplace_back(attribute->tagConst(), value ? std::u16string_view(value) : std::u16string_view());
  }
}

char16_t UpperAscii(char16_t c) { return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c; }

bool EqualNoCase(std::u16string_view a, std::u16string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                            [](char16_t x, char16_t y) { return UpperAscii(x) == UpperAscii(y); });
}

const std::u16string_view* Find(const AttributeViews& attributes, std::u16string_view tag) {
  for (const auto& [name, value] : attributes) {
    if (EqualNoCase(name, tag)) return &value;
  }
  return nullptr;
}

// The first attribute whose tag matches `pattern`, as the library matches tags.
const std::u16string_view* Matching(const AttributeViews& attributes, const std::u16string& pattern) {
  for (const auto& [name, value] : attributes) {
    if (zdutWcMatchEx(name.data(), pattern.c_str(), true)) return &value;  // tags end with a null unit
  }
  return nullptr;
}

// Whether an attribute tag could make its reference a coil or a contact. The
// classification gives those kinds only for a tag "TAG" or one that begins
// "TAG1", "TAG2" or "TAG_", in any case; a unit beyond ASCII passes, as case
// folding might take it to one of those letters. Only a cheap test ahead of
// the classification, which decides: wire numbers and terminals, most of a
// drawing, stop here.
bool MayMarkCoilOrContact(std::u16string_view tag) {
  if (tag.size() < 3) return false;
  constexpr std::u16string_view kStart = u"TAG";
  for (std::size_t i = 0; i < kStart.size(); ++i) {
    if (tag[i] >= 0x80) return true;
    if (UpperAscii(tag[i]) != kStart[i]) return false;
  }
  if (tag.size() == kStart.size()) return true;
  const char16_t next = tag[kStart.size()];
  return next == u'1' || next == u'2' || next == u'_' || next >= 0x80;
}

bool MayBeCoilOrContact(const AttributeViews& attributes) {
  return std::any_of(attributes.begin(), attributes.end(),
                     [](const auto& attribute) { return MayMarkCoilOrContact(attribute.first); });
}

bool ContainsNoCase(std::u16string_view text, std::u16string_view part) {
  for (std::size_t at = 0; at + part.size() <= text.size(); ++at) {
    if (EqualNoCase(text.substr(at, part.size()), part)) return true;
  }
  return false;
}

// The kind a contact's block name says: Form C, NC or NO; empty when none.
std::u16string_view KindOfBlockName(std::u16string_view blockName) {
  if (ContainsNoCase(blockName, u"NONC") || ContainsNoCase(blockName, u"NCNO")) return u"NONC";
  if (ContainsNoCase(blockName, u"NC")) return u"NC";
  if (ContainsNoCase(blockName, u"NO")) return u"NO";
  return u"";
}

// The kind of a contact, kept in the pool: its kind attribute in capitals
// when it has one, else what its block name says; NCNO is NONC.
PooledText KeepKind(const std::u16string_view* attribute, std::u16string_view blockName,
                    DrawingComponents& components) {
  if (!attribute || attribute->empty()) return components.keep(KindOfBlockName(blockName));
  if (EqualNoCase(*attribute, u"NCNO")) return components.keep(u"NONC");
  const PooledText kind = components.keep(*attribute);
  for (std::size_t i = 0; i < kind.length; ++i)
    components.texts[kind.offset + i] = UpperAscii(components.texts[kind.offset + i]);
  return kind;
}

// The positive number that `digits` spell in ASCII decimal; 0 when they spell none or one too large.
int PinNumber(std::u16string_view digits) {
  if (digits.empty()) return 0;
  long number = 0;
  for (char16_t c : digits) {
    if (c < u'0' || c > u'9') return 0;
    number = number * 10 + (c - u'0');
    if (number > std::numeric_limits<int>::max()) return 0;
  }
  return static_cast<int>(number);
}

// TERM01, TERM02, ...: each pin's number (without leading zeros) and its
// text, by number, added to the drawing's pins; of two with one number, the first.
PooledRun KeepPins(const AttributeViews& attributes, std::u16string_view prefix, DrawingComponents& components) {
  thread_local std::vector<std::pair<int, std::u16string_view>> byNumber;  // kept for its room
  byNumber.clear();
  for (const auto& [name, value] : attributes) {
    if (name.size() <= prefix.size() || !EqualNoCase(name.substr(0, prefix.size()), prefix)) continue;
    const int number = PinNumber(name.substr(prefix.size()));
    if (number > 0 && !value.empty()) byNumber.emplace_back(number, value);
  }
  const auto byPin = [](const auto& a, const auto& b) { return a.first < b.first; };
  if (!std::is_sorted(byNumber.begin(), byNumber.end(), byPin))  // symbols list their pins in order, nearly always
    std::stable_sort(byNumber.begin(), byNumber.end(), byPin);
  PooledRun pins{static_cast<std::uint32_t>(components.pins.size()), 0};
  for (std::size_t i = 0; i < byNumber.size(); ++i) {
    if (i > 0 && byNumber[i].first == byNumber[i - 1].first) continue;
    char digits[12];
    char* end = std::to_chars(std::begin(digits), std::end(digits), byNumber[i].first).ptr;
    char16_t code[12];
    std::copy(digits, end, code);
    const PooledText codeText = components.keep({code, static_cast<std::size_t>(end - digits)});
    components.pins.push_back({codeText, components.keep(byNumber[i].second)});
    ++pins.count;
  }
  return pins;
}

SymbolPlace PlaceOf(const ZdDbBlockReference& reference, const AttributeViews& attributes, int sheet,
                    const ProjectConventions& conventions, DrawingComponents& components) {
  SymbolPlace place;
  place.sheetInDrawing = sheet;
  const std::u16string_view* given = Find(attributes, conventions.referenceAttribute);
  if (given && !given->empty()) {
    place.reference = components.keep(*given);
  } else {
    place.gridLine = GridLine(InsertionY(reference), conventions.grid);
  }
  return place;
}

PooledText KeepBlockName(const ZdDbDatabase& database, const ZdDbBlockReference& reference,
                         DrawingComponents& components) {
  const auto* record = As<ZdDbBlockTableRecord>(database.objectAt(reference.blockTableRecord()));
  return components.keep(record ? record->name() : reference.undefinedBlockName());
}

PooledRun KeepAttributes(const AttributeViews& attributes, DrawingComponents& components) {
  const PooledRun run{static_cast<std::uint32_t>(components.attributes.size()),
                      static_cast<std::uint32_t>(attributes.size())};
  for (const auto& [tag, value] : attributes)
    components.attributes.push_back({components.keep(tag), components.keep(value)});
  return run;
}

void AddCoil(const ZdDbDatabase& database, const ZdDbBlockReference& reference, const AttributeViews& attributes,
             int sheet, const ProjectConventions& conventions, DrawingComponents& components) {
  CoilSymbol coil;
  coil.handle = reference.objectHandle().value();
  const std::u16string_view* tag = Matching(attributes, conventions.coilTagPattern);
  if (!tag || tag->empty()) {
    components.problems.push_back({coil.handle, 0, "a coil without a tag"});
    return;
  }
  coil.tag = components.keep(*tag);
  coil.blockName = KeepBlockName(database, reference, components);
  coil.place = PlaceOf(reference, attributes, sheet, conventions, components);
  coil.attributes = KeepAttributes(attributes, components);
  if (ZdValueNode* xdata = reference.xData()) coil.xdata.reset(xdata, [](ZdValueNode* chain) { zdutRelRb(chain); });
  components.coils.push_back(std::move(coil));
}

void AddContact(const ZdDbDatabase& database, const ZdDbBlockReference& reference, const AttributeViews& attributes,
                int sheet, const ProjectConventions& conventions, DrawingComponents& components) {
  ContactSymbol contact;
  contact.handle = reference.objectHandle().value();
  const std::u16string_view* coil = Matching(attributes, conventions.contactCoilPattern);
  if (!coil || coil->empty()) {
    components.problems.push_back({contact.handle, 0, "a contact that names no coil"});
    return;
  }
  contact.coilTag = components.keep(*coil);
  contact.blockName = KeepBlockName(database, reference, components);
  // The block name's view is read before the kind is kept, which may move the pool.
  contact.kind = KeepKind(Find(attributes, conventions.kindAttribute), components.text(contact.blockName), components);
  contact.occurrenceType = conventions.occurrenceType;
  contact.place = PlaceOf(reference, attributes, sheet, conventions, components);
  contact.pins = KeepPins(attributes, conventions.pinPrefix, components);
  if (const std::u16string_view* xref = Find(attributes, u"XREF")) {
    contact.xref = components.keep(*xref);
    contact.hasXref = true;
  }
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

// The records of the drawing being read are gathered in vectors that each
// reading thread keeps for their room, and copied, once the drawing's
// database is dropped, to vectors of their exact size: so they take no room
// beyond their own, and they are not strewn among the database's objects,
// whose memory is left in one piece for the next drawing.
DrawingComponents& GatheringRoom() {
  thread_local DrawingComponents room;
  room.sheets = 0;
  room.coils.clear();
  room.contacts.clear();
  room.problems.clear();
  room.texts.clear();
  room.attributes.clear();
  room.pins.clear();
  return room;
}

template <class T>
void CopyExactly(const std::vector<T>& from, std::vector<T>& to) {
  to.assign(from.begin(), from.end());
}

// The gathered records, in `components`; the problems are moved, the rest copied.
void TakeRecords(DrawingComponents& gathered, DrawingComponents& components) {
  components.sheets = gathered.sheets;
  CopyExactly(gathered.coils, components.coils);
  gathered.coils.clear();  // their xdata goes with the copies
  CopyExactly(gathered.contacts, components.contacts);
  for (DrawingProblem& problem : gathered.problems) components.problems.push_back(std::move(problem));
  components.texts.assign(gathered.texts);
  CopyExactly(gathered.attributes, components.attributes);
  CopyExactly(gathered.pins, components.pins);
}

}  // namespace

PooledText DrawingComponents::keep(std::u16string_view text) {
  // Places are 32-bit: a pool that would pass that is refused, never wrapped.
  if (text.size() > std::numeric_limits<std::uint32_t>::max() - texts.size())
    throw std::length_error("the drawing's symbols hold more text than a drawing's records can keep");
  const PooledText pooled{static_cast<std::uint32_t>(texts.size()), static_cast<std::uint32_t>(text.size())};
  texts.append(text);
  return pooled;
}

void CollectComponents(const ZdDbDatabase& database, const ProjectConventions& conventions,
                       DrawingComponents& components) {
  AttributeViews attributes;  // of the reference at hand; kept for its room
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
      const auto* reference = As<ZdDbBlockReference>(database.objectAt(id));
      if (!reference) continue;
      ReadAttributes(database, *reference, attributes);
      if (!MayBeCoilOrContact(attributes)) continue;
      const Kind kind = OhmDwgUtils::getOhmObjectType(reference);
      if (kind != OhmDwgUtils::EntityTag1 && kind != OhmDwgUtils::EntityTag2) continue;
      if (kind == OhmDwgUtils::EntityTag1) {
        AddCoil(database, *reference, attributes, components.sheets, conventions, components);
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
  DrawingComponents& gathered = GatheringRoom();
  try {
    CollectComponents(*database, conventions, gathered);
  } catch (const std::length_error& tooMuch) {
    components.readable = false;
    components.problems.push_back({0, 0, tooMuch.what()});
    return components;
  }
  database.reset();
  TakeRecords(gathered, components);
  return components;
}
