#include "project/UpdateReport.h"

#include <algorithm>

#include "win/Utf8.h"

namespace {

std::string Escaped(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string Cell(const std::u16string& text) { return "<td>" + Escaped(Utf16ToUtf8(text)) + "</td>"; }
std::string Cell(const std::string& text) { return "<td>" + Escaped(text) + "</td>"; }

const char* StyleName(OhmUtXrefEntity::Style style) {
  switch (style) {
    case OhmUtXrefEntity::StyleText:
      return "attribute text";
    case OhmUtXrefEntity::StyleGraphic:
      return "contact lines";
    case OhmUtXrefEntity::StyleTable:
      return "table";
    default:
      return "none";
  }
}

std::string CoilSection(const ProjectUpdateResult& result, const CoilPlan& coil) {
  const DrawingComponents& drawing = result.drawings[coil.drawing];
  std::string html = "<h2>" + Escaped(Utf16ToUtf8(coil.tag)) + "</h2>\n<p>Sheet " + Escaped(Utf16ToUtf8(coil.sheet)) +
                     ", line " + Escaped(Utf16ToUtf8(coil.reference)) + " in " + Escaped(drawing.file) + " (handle " +
                     HandleText(coil.handle) + "); " + StyleName(coil.style) + "</p>\n";
  std::vector<ContactPlace> contacts = coil.contacts;
  std::stable_sort(contacts.begin(), contacts.end(),
                   [](const ContactPlace& a, const ContactPlace& b) { return a.sheet < b.sheet; });
  html += "<table>\n<tr><th>Sheet</th><th>Reference</th><th>Kind</th><th>Drawing</th><th>Handle</th></tr>\n";
  for (const ContactPlace& contact : contacts) {
    const std::u16string kind(ShownKind(contact.kind(result.drawings)));
    html += "<tr>" + Cell(contact.sheetText()) + Cell(contact.reference(result.drawings)) + Cell(kind) +
            Cell(result.drawings[contact.drawing].file) + Cell(HandleText(contact.handle)) + "</tr>\n";
  }
  if (contacts.empty()) html += "<tr><td colspan=\"5\">no contacts</td></tr>\n";
  return html + "</table>\n";
}

std::string ProblemSection(const ProjectUpdateResult& result) {
  std::string html = "<h2>Problems</h2>\n";
  if (result.plan.problems.empty()) return html + "<p>None.</p>\n";
  html += "<table>\n<tr><th>Drawing</th><th>Where</th><th>Problem</th></tr>\n";
  for (const ProjectProblem& problem : result.plan.problems) {
    const std::string where = problem.handle ? "handle " + HandleText(problem.handle)
                              : problem.line ? "line " + std::to_string(problem.line)
                                             : "";
    html += "<tr>" + Cell(result.drawings[problem.drawing].file) + Cell(where) + Cell(problem.message) + "</tr>\n";
  }
  return html + "</table>\n";
}

}  // namespace

std::string HandleText(std::uint64_t handle) {
  static const char kDigits[] = "0123456789ABCDEF";
  std::string text;
  do {
    text.insert(text.begin(), kDigits[handle & 0xF]);
    handle >>= 4;
  } while (handle);
  return text;
}

std::string HtmlReport(const ProjectUpdateResult& result) {
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>Cross-references</title>\n"
      "<style>body{font-family:sans-serif}table{border-collapse:collapse;margin-bottom:1em}"
      "td,th{border:1px solid #888;padding:2px 8px;text-align:left}</style>\n</head>\n<body>\n"
      "<h1>Cross-references</h1>\n";
  for (const CoilPlan& coil : result.plan.coils) html += CoilSection(result, coil);
  html += ProblemSection(result);
  return html + "</body>\n</html>\n";
}
