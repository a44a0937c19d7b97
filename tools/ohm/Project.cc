#include "Project.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <optional>
#include <utility>

#include "CommandError.h"
#include "JsonLocation.h"
#include "ohmutils/xref/OhmCfgSetting.h"
#include "win/Utf8.h"

namespace {

using Json = nlohmann::json;
using Pointer = Json::json_pointer;

// A place in the document that doesn't follow the schema.
struct SchemaError {
  Pointer at;
  std::string message;
  bool atMemberName = false;  // the member's name is wrong, not its value
};

[[noreturn]] void Fail(const Pointer& at, const std::string& message) { throw SchemaError{at, message}; }
[[noreturn]] void FailName(const Pointer& at, const std::string& message) { throw SchemaError{at, message, true}; }

const char* KindOf(const Json& value) { return value.type_name(); }

void ExpectType(const Json& value, const Pointer& at, Json::value_t type, const char* expected) {
  const bool numberOk = type == Json::value_t::number_integer && value.is_number_integer();
  if (value.type() != type && !numberOk) Fail(at, std::string("expected ") + expected + ", found " + KindOf(value));
}

void ExpectMembers(const Json& object, const Pointer& at, std::initializer_list<const char*> allowed) {
  for (const auto& [key, value] : object.items()) {
    bool known = false;
    for (const char* name : allowed) known = known || key == name;
    if (known) continue;
    std::string list;
    for (const char* name : allowed) list += std::string(list.empty() ? "" : ", ") + "\"" + name + "\"";
    FailName(at / key, "unknown member \"" + key + "\"; expected one of " + list);
  }
}

const Json* Member(const Json& object, const Pointer& at, const char* key, bool required) {
  const auto found = object.find(key);
  if (found != object.end()) return &*found;
  if (required) Fail(at, std::string("expected a member \"") + key + "\"");
  return nullptr;
}

// A 32-bit integer; a larger one is refused, not wrapped.
std::int32_t Int32(const Json& value, const Pointer& at) {
  ExpectType(value, at, Json::value_t::number_integer, "an integer");
  const bool fits = value.is_number_unsigned()
                        ? value.get<std::uint64_t>() <= static_cast<std::uint64_t>(INT32_MAX)
                        : value.get<std::int64_t>() >= INT32_MIN && value.get<std::int64_t>() <= INT32_MAX;
  if (!fits) Fail(at, "expected an integer from -2147483648 to 2147483647, found " + value.dump());
  return static_cast<std::int32_t>(value.get<std::int64_t>());
}

std::u16string Text(const Json& value, const Pointer& at) {
  ExpectType(value, at, Json::value_t::string, "a string");
  return Utf8ToUtf16(value.get<std::string>());
}

std::u16string OptionalText(const Json& object, const Pointer& at, const char* key) {
  const Json* value = Member(object, at, key, false);
  return value ? Text(*value, at / key) : std::u16string();
}

OhmDsOccurrence::PropertyMap Properties(const Json& object, const Pointer& at) {
  ExpectType(object, at, Json::value_t::object, "an object of texts");
  OhmDsOccurrence::PropertyMap properties;
  for (const auto& [key, value] : object.items()) properties[Utf8ToUtf16(key)] = Text(value, at / key);
  return properties;
}

// An option number, or the name of one the cross-reference engine reads.
OhmCfgSetting::WD_M_ATTRIB OptionNumber(const std::string& key, const Pointer& at) {
  static const std::map<std::string, OhmCfgSetting::WD_M_ATTRIB> kNames = {
      {"WD_XREF_FORMAT", OhmCfgSetting::WD_XREF_FORMAT},
      {"WD_XREF_ALTFORMAT", OhmCfgSetting::WD_XREF_ALTFORMAT},
      {"WD_XREF_STYLE", OhmCfgSetting::WD_XREF_STYLE},
      {"WD_XREF_TXTBTWN", OhmCfgSetting::WD_XREF_TXTBTWN},
      {"WD_XREF_GRAPHIC", OhmCfgSetting::WD_XREF_GRAPHIC},
      {"WD_XREF_GRAPHICSTYLE", OhmCfgSetting::WD_XREF_GRAPHICSTYLE},
      {"WD_XREF_CONTACTMAP", OhmCfgSetting::WD_XREF_CONTACTMAP},
      {"WD_XREF_TBLINDEX", OhmCfgSetting::WD_XREF_TBLINDEX},
      {"WD_XREF_TBLFLDNAMS", OhmCfgSetting::WD_XREF_TBLFLDNAMS},
  };
  if (const auto named = kNames.find(key); named != kNames.end()) return named->second;
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
  if (key.empty() || error != std::errc() || end != key.data() + key.size()) {
    FailName(
        at, "expected an option number or an option name such as \"WD_XREF_FORMAT\" as the key, found \"" + key + "\"");
  }
  return static_cast<OhmCfgSetting::WD_M_ATTRIB>(number);
}

OhmNoRxUtilsSettingOverride::SettingMap Settings(const Json& object, const Pointer& at) {
  ExpectType(object, at, Json::value_t::object, "an object of option texts");
  OhmNoRxUtilsSettingOverride::SettingMap settings;
  for (const auto& [key, value] : object.items()) settings[OptionNumber(key, at / key)] = Text(value, at / key);
  return settings;
}

OhmDsComponentPinOcc Pin(const Json& object, const Pointer& at) {
  OhmDsComponentPinOcc pin;
  pin.mProperties = Properties(object, at);
  return pin;
}

ContactRecord Contact(const Json& object, const Pointer& at, const std::string& coil, std::size_t number) {
  ExpectType(object, at, Json::value_t::object, "an occurrence object");
  ExpectMembers(object, at,
                {"name", "drawing", "type", "occKey", "properties", "sheetProperties", "pins", "valueA", "valueB"});
  ContactRecord record;
  const Json* name = Member(object, at, "name", false);
  if (name) ExpectType(*name, at / "name", Json::value_t::string, "a string");
  record.label = name ? name->get<std::string>() : coil + "/" + std::to_string(number);  // UTF-8 as it stands
  OhmDsComponentOcc& occ = record.occurrence;
  occ.mOccID.mDwgPath = Text(*Member(object, at, "drawing", true), at / "drawing");
  occ.mOccID.mOccKey = OptionalText(object, at, "occKey");
  occ.mType = 8;
  if (const Json* type = Member(object, at, "type", false)) occ.mType = Int32(*type, at / "type");
  if (const Json* properties = Member(object, at, "properties", false)) {
    occ.mProperties = Properties(*properties, at / "properties");
  }
  if (const Json* sheet = Member(object, at, "sheetProperties", false)) {
    occ.mSheetProperties = Properties(*sheet, at / "sheetProperties");
  }
  if (const Json* pins = Member(object, at, "pins", false)) {
    ExpectType(*pins, at / "pins", Json::value_t::array, "an array of pin objects");
    for (std::size_t i = 0; i < pins->size(); ++i) occ.mPins.push_back(Pin((*pins)[i], at / "pins" / i));
  }
  occ.mXrefValueA = OptionalText(object, at, "valueA");
  occ.mXrefValueB = OptionalText(object, at, "valueB");
  return record;
}

std::map<std::string, std::vector<ContactRecord>> Coils(const Json& object, const Pointer& at) {
  ExpectType(object, at, Json::value_t::object, "an object of coils, each an array of occurrences");
  std::map<std::string, std::vector<ContactRecord>> coils;
  for (const auto& [name, contacts] : object.items()) {
    ExpectType(contacts, at / name, Json::value_t::array, "an array of occurrences");
    std::vector<ContactRecord>& records = coils[name];
    records.reserve(contacts.size());  // a record is copied, not moved, when the vector grows
    for (std::size_t i = 0; i < contacts.size(); ++i)
      records.push_back(Contact(contacts[i], at / name / i, name, i + 1));
  }
  return coils;
}

std::vector<std::u16string> Texts(const Json& array, const Pointer& at, const char* expected) {
  ExpectType(array, at, Json::value_t::array, expected);
  std::vector<std::u16string> texts;
  for (std::size_t i = 0; i < array.size(); ++i) texts.push_back(Text(array[i], at / i));
  return texts;
}

std::uint64_t Handle(const Json& value, const Pointer& at) {
  const std::string text = Utf16ToUtf8(Text(value, at));
  std::uint64_t handle = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), handle, 16);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() || handle == 0) {
    Fail(at, "expected a handle: hexadecimal digits, not zero, found \"" + text + "\"");
  }
  return handle;
}

void InlineBlock(const Json& object, const Pointer& at, EntitySpec& entity) {
  const Pointer xdataAt = at / "xdata";
  const Json& xdata = *Member(object, at, "xdata", true);
  ExpectType(xdata, xdataAt, Json::value_t::object, "an object of xdata option texts by application name");
  for (const auto& [app, value] : xdata.items())
    entity.xdata.emplace_back(Utf8ToUtf16(app), Text(value, xdataAt / app));
  const Json* tags = Member(object, at, "attributes", false);
  entity.attributes = tags ? Texts(*tags, at / "attributes", "an array of attribute tags")
                           : std::vector<std::u16string>{u"XREF", u"XREFNO", u"XREFNC"};
}

EntitySpec Entity(const Json& object, const Pointer& at, const Project& project, const std::u16string& host) {
  ExpectType(object, at, Json::value_t::object, "an entity object");
  ExpectMembers(object, at, {"name", "coil", "drawing", "handle", "xdata", "attributes", "hostDrawing", "rows"});
  EntitySpec entity;
  entity.name = Utf16ToUtf8(Text(*Member(object, at, "name", true), at / "name"));
  entity.coil = Utf16ToUtf8(Text(*Member(object, at, "coil", true), at / "coil"));
  if (!project.coils.count(entity.coil)) Fail(at / "coil", "expected the name of a coil in \"coils\"");
  const Json* drawing = Member(object, at, "drawing", false);
  if (drawing && (object.contains("xdata") || object.contains("attributes"))) {
    Fail(at, "expected either \"drawing\" and \"handle\" or \"xdata\", not both");
  }
  if (drawing) {
    const std::filesystem::path file = Utf16ToUtf8(Text(*drawing, at / "drawing"));
    entity.drawingFile = (std::filesystem::path(project.file).parent_path() / file).lexically_normal().string();
    entity.handle = Handle(*Member(object, at, "handle", true), at / "handle");
  } else {
    if (object.contains("handle")) Fail(at / "handle", "expected a \"drawing\" beside the \"handle\"");
    InlineBlock(object, at, entity);
  }
  const Json* entityHost = Member(object, at, "hostDrawing", false);
  entity.hostDrawing = entityHost ? Text(*entityHost, at / "hostDrawing") : host;
  if (const Json* rows = Member(object, at, "rows", false)) {
    ExpectType(*rows, at / "rows", Json::value_t::array, "an array of rows");
    for (std::size_t i = 0; i < rows->size(); ++i) {
      entity.rows.push_back(Texts((*rows)[i], at / "rows" / i, "a row: an array of cell texts"));
    }
  }
  return entity;
}

Project Read(const Json& document, const std::string& path) {
  const Pointer root;
  ExpectType(document, root, Json::value_t::object, "a project object");
  ExpectMembers(document, root, {"hostDrawing", "settings", "coils", "entities"});
  Project project;
  project.file = path;
  const std::u16string host = Text(*Member(document, root, "hostDrawing", true), root / "hostDrawing");
  if (const Json* settings = Member(document, root, "settings", false)) {
    project.settings = Settings(*settings, root / "settings");
  }
  project.coils = Coils(*Member(document, root, "coils", true), root / "coils");
  const Json& entities = *Member(document, root, "entities", true);
  ExpectType(entities, root / "entities", Json::value_t::array, "an array of entities");
  for (std::size_t i = 0; i < entities.size(); ++i) {
    project.entities.push_back(Entity(entities[i], root / "entities" / i, project, host));
  }
  return project;
}

double Number(const Json& value, const Pointer& at) {
  if (!value.is_number()) Fail(at, std::string("expected a number, found ") + KindOf(value));
  return value.get<double>();
}

LineGrid Grid(const Json& object, const Pointer& at) {
  ExpectType(object, at, Json::value_t::object, "a grid object");
  ExpectMembers(object, at, {"top", "spacing", "first"});
  LineGrid grid;
  if (const Json* top = Member(object, at, "top", false)) grid.top = Number(*top, at / "top");
  if (const Json* spacing = Member(object, at, "spacing", false)) grid.spacing = Number(*spacing, at / "spacing");
  if (!(grid.spacing > 0)) Fail(at / "spacing", "expected a spacing above 0");
  if (const Json* first = Member(object, at, "first", false)) grid.first = Int32(*first, at / "first");
  return grid;
}

ProjectConventions Conventions(const Json& object, const Pointer& at) {
  ExpectType(object, at, Json::value_t::object, "an object of conventions");
  ExpectMembers(
      object, at,
      {"coilTag", "contactCoil", "kindAttribute", "referenceAttribute", "pinPrefix", "grid", "occurrenceType"});
  ProjectConventions conventions;
  auto text = [&](const char* key, std::u16string& into) {
    if (const Json* value = Member(object, at, key, false)) into = Text(*value, at / key);
  };
  text("coilTag", conventions.coilTagPattern);
  text("contactCoil", conventions.contactCoilPattern);
  text("kindAttribute", conventions.kindAttribute);
  text("referenceAttribute", conventions.referenceAttribute);
  text("pinPrefix", conventions.pinPrefix);
  if (const Json* grid = Member(object, at, "grid", false)) conventions.grid = Grid(*grid, at / "grid");
  if (const Json* type = Member(object, at, "occurrenceType", false)) {
    ExpectType(*type, at / "occurrenceType", Json::value_t::number_integer, "an integer");
    conventions.occurrenceType = type->get<std::int32_t>();
  }
  return conventions;
}

ProjectDescription ReadUpdateProject(const Json& document, const std::string& path) {
  const Pointer root;
  ExpectType(document, root, Json::value_t::object, "a project object");
  ExpectMembers(document, root, {"drawings", "settings", "conventions"});
  ProjectDescription project;
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  project.root = folder.string();
  const Json& drawings = *Member(document, root, "drawings", true);
  for (const std::u16string& drawing : Texts(drawings, root / "drawings", "an array of drawing files")) {
    project.drawings.push_back((folder / Utf16ToUtf8(drawing)).lexically_normal().string());
  }
  if (project.drawings.empty()) Fail(root / "drawings", "expected at least one drawing");
  if (const Json* settings = Member(document, root, "settings", false)) {
    for (auto& [option, value] : Settings(*settings, root / "settings")) project.settings[option] = value;
  }
  if (const Json* conventions = Member(document, root, "conventions", false)) {
    project.conventions = Conventions(*conventions, root / "conventions");
  }
  return project;
}

std::string Located(const std::string& path, const std::string& text, std::size_t offset, const std::string& what) {
  const TextPosition at = PositionOfOffset(text, offset == std::string::npos ? 0 : offset);
  return path + ":" + std::to_string(at.line) + ":" + std::to_string(at.column) + ": " + what;
}

// nlohmann's parse error text without its prefix and position.
std::string SyntaxProblem(const Json::parse_error& error) {
  const std::string what = error.what();
  const std::size_t colon = what.find(": ");
  return colon == std::string::npos ? what : what.substr(colon + 2);
}

std::ifstream OpenProjectFile(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) FailBadInput(path + ": is a folder, not a project file");
  std::ifstream in(path, std::ios::binary);
  if (!in) FailBadInput(path + ": can't read the project file");
  return in;
}

// The file's bytes in a string of exactly their size: a large file is held
// once, not in a buffer that grew by doubling.
std::string ReadProjectFile(const std::string& path) {
  std::ifstream in = OpenProjectFile(path);
  in.seekg(0, std::ios::end);
  std::string text(static_cast<std::size_t>(std::max<std::streamoff>(in.tellg(), 0)), '\0');
  in.seekg(0);
  if (!in.read(text.data(), static_cast<std::streamsize>(text.size()))) {
    FailBadInput(path + ": can't read the project file");
  }
  return text;
}

// What the parser made of a JSON input: the document, or where and why it
// stopped. A number too large for a double leaves the document empty and no
// error; the fault scan finds it.
struct Parsed {
  Json document;
  std::optional<std::size_t> errorAt;
  std::string problem;
};

template <typename Input>
Parsed ParseInput(Input&& input) {
  Parsed parsed;
  try {
    parsed.document = Json::parse(std::forward<Input>(input));
  } catch (const Json::parse_error& error) {
    parsed.errorAt = error.byte == 0 ? 0 : error.byte - 1;
    parsed.problem = SyntaxProblem(error);
  } catch (const Json::out_of_range&) {
  }
  return parsed;
}

// Checks what the parser let pass, then `read` checks the schema; every
// failure is placed in `text`, the JSON that was parsed.
template <typename Result, typename Reader>
Result CheckAndRead(Parsed parsed, const std::string& text, const std::string& path, Reader read) {
  if (parsed.errorAt) FailBadInput(Located(path, text, *parsed.errorAt, parsed.problem));
  if (const std::optional<JsonFault> fault = FindJsonFault(text)) {
    FailBadInput(Located(path, text, fault->offset, fault->message));
  }
  try {
    return read(parsed.document, path);
  } catch (const SchemaError& error) {
    FailBadInput(Located(path, text, OffsetOfValue(text, error.at, error.atMemberName), error.message));
  }
}

// A file is parsed from its stream and its text read only afterwards: the
// parser holds two buffers the size of the largest token while it works,
// and the text beside them would double a large file's peak.
template <typename Result, typename Reader>
Result LoadJson(const std::string& path, Reader read) {
  Parsed parsed = ParseInput(OpenProjectFile(path));
  const std::string text = ReadProjectFile(path);
  return CheckAndRead<Result>(std::move(parsed), text, path, read);
}

}  // namespace

Project LoadProject(const std::string& path) { return LoadJson<Project>(path, Read); }

Project ParseProject(const std::string& text, const std::string& path) {
  return CheckAndRead<Project>(ParseInput(text), text, path, Read);
}

ProjectDescription ParseUpdateProject(const std::string& text, const std::string& path) {
  return CheckAndRead<ProjectDescription>(ParseInput(text), text, path, ReadUpdateProject);
}

ProjectDescription LoadUpdateProject(const std::string& path) {
  if (std::filesystem::is_directory(path)) {
    try {
      return DescribeFolder(path);
    } catch (const std::runtime_error& error) {
      FailBadInput(error.what());
    }
  }
  return LoadJson<ProjectDescription>(path, ReadUpdateProject);
}
