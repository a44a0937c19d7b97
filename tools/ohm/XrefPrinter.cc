#include "XrefPrinter.h"

#include <nlohmann/json.hpp>

#include "win/Utf8.h"

namespace {

using Json = nlohmann::ordered_json;

std::string Quoted(const std::u16string& text) { return Json(Utf16ToUtf8(text)).dump(); }

std::string Cells(const std::vector<std::u16string>& cells) {
  std::string line;
  for (const std::u16string& cell : cells) line += (line.empty() ? "" : " | ") + Quoted(cell);
  return line;
}

void PrintEntity(std::ostream& out, const EntityReport& report) {
  out << "entity " << Json(report.name).dump() << " (" << StyleName(report.style) << ")\n";
  if (!report.error.empty()) out << "  error: " << report.error << '\n';
  for (const auto& [tag, text] : report.attributes) out << "  " << Utf16ToUtf8(tag) << ": " << Quoted(text) << '\n';
  for (const GraphicLine& line : report.lines) out << "  " << line.contact << ": " << Quoted(line.text) << '\n';
  if (report.style == OhmUtXrefEntity::StyleTable) out << "  columns: " << Cells(report.titles) << '\n';
  for (const TableRow& row : report.rows) out << "  " << row.contact << ": " << Cells(row.cells) << '\n';
  for (const RowMatch& match : report.matches) {
    out << "  row " << match.row << " matches ";
    if (match.contacts.empty()) out << "no contact";
    for (std::size_t i = 0; i < match.contacts.size(); ++i) out << (i ? ", " : "") << match.contacts[i];
    out << '\n';
  }
}

Json Texts(const std::vector<std::u16string>& texts) {
  Json array = Json::array();
  for (const std::u16string& text : texts) array.push_back(Utf16ToUtf8(text));
  return array;
}

Json EntityJson(const EntityReport& report) {
  Json entity = {{"name", report.name}, {"presentation", StyleName(report.style)}};
  if (!report.error.empty()) entity["error"] = report.error;
  if (report.style == OhmUtXrefEntity::StyleText) {
    Json& attributes = entity["attributes"] = Json::object();
    for (const auto& [tag, text] : report.attributes) attributes[Utf16ToUtf8(tag)] = Utf16ToUtf8(text);
  }
  if (report.style == OhmUtXrefEntity::StyleGraphic) {
    Json& lines = entity["lines"] = Json::array();
    for (const GraphicLine& line : report.lines)
      lines.push_back({{"contact", line.contact}, {"text", Utf16ToUtf8(line.text)}});
  }
  if (report.style == OhmUtXrefEntity::StyleTable) {
    entity["columns"] = Texts(report.titles);
    Json& rows = entity["rows"] = Json::array();
    for (const TableRow& row : report.rows) rows.push_back({{"contact", row.contact}, {"cells", Texts(row.cells)}});
    Json& matches = entity["matches"] = Json::array();
    for (const RowMatch& match : report.matches) matches.push_back({{"row", match.row}, {"contacts", match.contacts}});
  }
  return entity;
}

}  // namespace

void PrintXrefText(std::ostream& out, const std::vector<EntityReport>& reports) {
  for (const EntityReport& report : reports) PrintEntity(out, report);
}

void PrintXrefJson(std::ostream& out, const std::vector<EntityReport>& reports) {
  Json entities = Json::array();
  for (const EntityReport& report : reports) entities.push_back(EntityJson(report));
  out << Json{{"entities", entities}}.dump(2) << '\n';
}
