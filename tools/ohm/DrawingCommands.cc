#include "DrawingCommands.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

#include "CommandError.h"
#include "Drawing.h"
#include "ohmutils/dwg/OhmDwgUtils.h"
#include "win/Utf8.h"
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode.h"
#include "zd/app/ZdDocManager.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbBlockTableRecord.h"
#include "zd/db/ZdDbDictionary.h"

namespace {

using Json = nlohmann::ordered_json;
using Kind = OhmDwgUtils::EntityType;

// The kinds by number, as the tool prints and reads them.
constexpr std::array<const char*, 19> kKindNames = {
    "Unknown", "FP",   "Tag1", "Tag2", "HaSWireNo", "HaDWireNo", "HaS",   "HaD",     "PlcIo",        "WdWn",
    "WdMlr",   "WdWc", "FPT",  "NP",   "TagStrip",  "AX",        "Table", "OneDash", "OneDashStrip",
};

bool SameNoCase(const std::string& a, const char* b) {
  const std::string other = b;
  if (a.size() != other.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(other[i])))
      return false;
  }
  return true;
}

Kind ParseKind(const std::string& text) {
  for (std::size_t i = 0; i < kKindNames.size(); ++i) {
    if (SameNoCase(text, kKindNames[i])) return static_cast<Kind>(i);
  }
  int number = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc() && end == text.data() + text.size() && number >= 0 && number < 19) {
    return static_cast<Kind>(number);
  }
  std::string names;
  for (const char* name : kKindNames) names += std::string(names.empty() ? "" : ", ") + name;
  FailBadInput("--kind: \"" + text + "\" is no kind; expected 0 to 18 or one of " + names);
}

// Where a block record's entities stand: "model", "paper LAYOUT" or "block NAME".
std::map<ZdDbObjectId, std::string> PlacesOfBlocks(const ZdDbDatabase& database) {
  std::map<ZdDbObjectId, std::string> places;
  for (ZdDbObjectId id : database.blockTableRecordIds()) {
    const auto* record = dynamic_cast<const ZdDbBlockTableRecord*>(database.objectAt(id));
    if (record) places[id] = "block " + Utf16ToUtf8(record->name());
  }
  const auto* layouts = dynamic_cast<const ZdDbDictionary*>(database.objectAt(database.layoutDictionaryId()));
  std::unique_ptr<ZdDbDictionaryIterator> entry(layouts ? layouts->newIterator() : nullptr);
  for (; entry && !entry->done(); entry->next()) {
    const auto* layout = dynamic_cast<const ZdDbLayout*>(database.objectAt(entry->objectId()));
    if (layout) places[layout->getBlockTableRecordId()] = "paper " + Utf16ToUtf8(layout->layoutName());
  }
  places[database.modelSpaceId()] = "model";
  return places;
}

struct Classified {
  std::string handle, place, name;
  Kind kind;
};

std::string BlockName(const ZdDbDatabase& database, const ZdDbBlockReference& reference) {
  const auto* record = dynamic_cast<const ZdDbBlockTableRecord*>(database.objectAt(reference.blockTableRecord()));
  return Utf16ToUtf8(record ? record->name() : reference.undefinedBlockName());
}

Classified Classify(const ZdDbDatabase& database, const ZdDbBlockReference& reference, const std::string& place) {
  return {HandleText(reference), place, BlockName(database, reference), OhmDwgUtils::getOhmObjectType(&reference)};
}

std::vector<Classified> ClassifyAll(const ZdDbDatabase& database) {
  const auto places = PlacesOfBlocks(database);
  std::vector<Classified> found;
  for (ZdDbObjectId blockId : database.blockTableRecordIds()) {
    const auto* record = dynamic_cast<const ZdDbBlockTableRecord*>(database.objectAt(blockId));
    std::unique_ptr<ZdDbBlockTableRecordIterator> it;
    ZdDbBlockTableRecordIterator* raw = nullptr;
    if (!record || record->newIterator(raw) != Zeda::eOk) continue;
    for (it.reset(raw); !it->done(); it->step()) {
      ZdDbObjectId id;
      it->getEntityId(id);
      if (const auto* reference = dynamic_cast<const ZdDbBlockReference*>(database.objectAt(id))) {
        found.push_back(Classify(database, *reference, places.at(blockId)));
      }
    }
  }
  return found;
}

// The block query of the library, on the drawing opened as a document.
std::vector<Classified> ClassifyKind(const std::string& file, std::shared_ptr<ZdDbDatabase> database, Kind kind) {
  const std::u16string name = WindowsPathOf(file);
  ZdApDocument* document = zdDocManagerPtr()->addDocument(name, database);
  OhmDwgUtils::BlockMap blocks;
  const Zeda::ErrorStatus status = OhmDwgUtils::getBlocks(name.c_str(), blocks, kind);
  zdDocManagerPtr()->closeDocument(document);
  if (status != Zeda::eOk) FailOperation(file + ": the block query failed (status " + std::to_string(status) + ")");
  const auto places = PlacesOfBlocks(*database);
  std::vector<Classified> found;
  for (const auto& [id, entity] : blocks) {
    const auto* reference = dynamic_cast<const ZdDbBlockReference*>(database->objectAt(id));
    const auto place = reference ? places.find(reference->ownerId()) : places.end();
    if (place != places.end()) found.push_back(Classify(*database, *reference, place->second));
  }
  return found;
}

void PrintClassified(const std::vector<Classified>& found, bool json, std::ostream& out) {
  if (!json) {
    for (const Classified& c : found) {
      out << c.handle << '\t' << c.place << '\t' << c.name << '\t' << kKindNames[c.kind] << '\n';
    }
    return;
  }
  Json array = Json::array();
  for (const Classified& c : found) {
    array.push_back({{"handle", c.handle},
                     {"place", c.place},
                     {"name", c.name},
                     {"kind", kKindNames[c.kind]},
                     {"kindNumber", static_cast<int>(c.kind)}});
  }
  out << array.dump(2) << '\n';
}

std::string Real(double value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.17g", value);
  return buffer;
}

// A node's value as text: strings as they are, numbers and points in C form,
// binary chunks in hexadecimal.
std::string ValueText(const ZdValueNode& node) {
  const short code = node.restype;
  if (code == XD_BINARY) {
    std::string hex;
    static const char* kDigits = "0123456789ABCDEF";
    for (short i = 0; i < node.resval.rbinary.clen; ++i) {
      const auto byte = static_cast<unsigned char>(node.resval.rbinary.buf[i]);
      hex += kDigits[byte >> 4];
      hex += kDigits[byte & 15];
    }
    return hex;
  }
  if (code >= 1000 && code <= 1009) return node.resval.rstring ? Utf16ToUtf8(node.resval.rstring) : std::string();
  if (code >= 1010 && code <= 1039) {
    return Real(node.resval.rpoint[0]) + "," + Real(node.resval.rpoint[1]) + "," + Real(node.resval.rpoint[2]);
  }
  if (code >= 1040 && code <= 1059) return Real(node.resval.rreal);
  if (code >= 1060 && code <= 1070) return std::to_string(node.resval.rint);
  if (code == 1071) return std::to_string(node.resval.rlong);
  return std::string();
}

}  // namespace

int RunClassify(const std::string& file, const std::optional<std::string>& kind, bool json, std::ostream& out) {
  const std::optional<Kind> wanted = kind ? std::optional<Kind>(ParseKind(*kind)) : std::nullopt;
  std::shared_ptr<ZdDbDatabase> database = ReadDrawing(file);
  PrintClassified(wanted ? ClassifyKind(file, database, *wanted) : ClassifyAll(*database), json, out);
  return kExitSuccess;
}

int RunLayouts(const std::string& file, bool json, std::ostream& out) {
  std::unique_ptr<ZdDbDatabase> database = ReadDrawing(file);
  OhmDwgUtils::LayoutList layouts;
  OhmDwgUtils::getAllLayoutNames(database.get(), layouts);
  Json array = Json::array();
  for (int i = 0; i < layouts.length(); ++i) {
    const std::string name = Utf16ToUtf8(layouts.at(i).str());
    if (json) {
      array.push_back(name);
    } else {
      out << name << '\n';
    }
  }
  if (json) out << array.dump(2) << '\n';
  return kExitSuccess;
}

int RunXData(const std::string& file, const std::string& handle, const std::optional<std::string>& app, bool json,
             std::ostream& out) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(handle.data(), handle.data() + handle.size(), value, 16);
  if (handle.empty() || error != std::errc() || end != handle.data() + handle.size() || value == 0) {
    FailBadInput("HANDLE: \"" + handle + "\" is no handle; expected hexadecimal digits, not zero");
  }
  std::unique_ptr<ZdDbDatabase> database = ReadDrawing(file);
  OpenedObject opened(*database, value, file);
  const std::u16string appName = app ? Utf8ToUtf16(*app) : std::u16string();
  ZdValueNode* chain = opened.object().xData(app ? appName.c_str() : nullptr);
  if (!chain)
    FailOperation(file + ": the object " + HandleText(opened.object()) + " has no xdata" +
                  (app ? " of " + *app : std::string()));
  Json array = Json::array();
  for (const ZdValueNode* node = chain; node; node = node->rbnext) {
    if (json) {
      array.push_back({{"code", node->restype}, {"value", ValueText(*node)}});
    } else {
      out << node->restype << '\t' << ValueText(*node) << '\n';
    }
  }
  zdutRelRb(chain);
  if (json) out << array.dump(2) << '\n';
  return kExitSuccess;
}
