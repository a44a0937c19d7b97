#include "UpdateCommand.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "CommandError.h"
#include "Project.h"
#include "XrefReport.h"
#include "project/UpdateReport.h"
#include "win/Utf8.h"

namespace {

using Json = nlohmann::ordered_json;

std::string Quoted(std::u16string_view text) { return Json(Utf16ToUtf8(text)).dump(); }

// Drawings are named from the project's folder, as the project names them;
// each name is worked out once, since every change and contact shows one.
std::vector<std::string> gNames;

void NameDrawings(const ProjectUpdateResult& result, const std::string& root) {
  for (const DrawingComponents& drawing : result.drawings) {
    const std::filesystem::path file(drawing.file);
    const std::filesystem::path relative = file.lexically_relative(root.empty() ? "." : root);
    gNames.push_back(relative.empty() || *relative.begin() == ".." ? file.string() : relative.string());
  }
}

const std::string& Name(const ProjectUpdateResult&, std::size_t drawing) { return gNames[drawing]; }

void PrintChanges(const ProjectUpdateResult& result) {
  for (const AttributeChange& change : result.plan.changes) {
    std::cout << Name(result, change.drawing) << ' ' << HandleText(change.handle) << ' ' << Utf16ToUtf8(change.tag)
              << ": " << Quoted(change.oldValue) << " -> " << Quoted(change.newValue) << '\n';
  }
}

void PrintPresentations(const ProjectUpdateResult& result) {
  for (const CoilPlan& coil : result.plan.coils) {
    if (coil.style != OhmUtXrefEntity::StyleGraphic && coil.style != OhmUtXrefEntity::StyleTable) continue;
    std::cout << "coil " << Utf16ToUtf8(coil.tag) << " at " << Name(result, coil.drawing) << ' '
              << HandleText(coil.handle) << " (" << StyleName(coil.style) << ")\n";
    for (const auto& [contact, text] : coil.lines)
      std::cout << "  " << Utf16ToUtf8(contact) << ": " << Quoted(text) << '\n';
    if (coil.style != OhmUtXrefEntity::StyleTable) continue;
    std::string titles;
    for (const std::u16string& title : coil.titles) titles += (titles.empty() ? "" : " | ") + Quoted(title);
    std::cout << "  columns: " << titles << '\n';
    for (const auto& [contact, cells] : coil.rows) {
      std::string row;
      for (const std::u16string& cell : cells) row += (row.empty() ? "" : " | ") + Quoted(cell);
      std::cout << "  " << Utf16ToUtf8(contact) << ": " << row << '\n';
    }
  }
}

std::string Where(const ProjectUpdateResult& result, const ProjectProblem& problem) {
  const std::string& file = Name(result, problem.drawing);
  if (problem.line > 0) return file + ":" + std::to_string(problem.line);
  return problem.handle ? file + ": handle " + HandleText(problem.handle) : file;
}

Json AsJson(const ProjectUpdateResult& result, bool written) {
  Json out{{"changes", Json::array()}, {"coils", Json::array()}, {"problems", Json::array()}};
  for (const AttributeChange& change : result.plan.changes) {
    out["changes"].push_back({{"drawing", Name(result, change.drawing)},
                              {"handle", HandleText(change.handle)},
                              {"tag", Utf16ToUtf8(change.tag)},
                              {"old", Utf16ToUtf8(change.oldValue)},
                              {"new", Utf16ToUtf8(change.newValue)}});
  }
  for (const CoilPlan& coil : result.plan.coils) {
    Json entry{{"drawing", Name(result, coil.drawing)},
               {"handle", HandleText(coil.handle)},
               {"tag", Utf16ToUtf8(coil.tag)},
               {"style", StyleName(coil.style)},
               {"contacts", Json::array()}};
    for (const ContactPlace& contact : coil.contacts) {
      entry["contacts"].push_back({{"drawing", Name(result, contact.drawing)},
                                   {"handle", HandleText(contact.handle)},
                                   {"kind", Utf16ToUtf8(contact.kind(result.drawings))},
                                   {"sheet", Utf16ToUtf8(contact.sheetText())},
                                   {"reference", Utf16ToUtf8(contact.reference(result.drawings))}});
    }
    for (const auto& [contact, text] : coil.lines) entry["lines"].push_back({Utf16ToUtf8(contact), Utf16ToUtf8(text)});
    for (const std::u16string& title : coil.titles) entry["columns"].push_back(Utf16ToUtf8(title));
    for (const auto& [contact, cells] : coil.rows) {
      Json row = Json::array();
      for (const std::u16string& cell : cells) row.push_back(Utf16ToUtf8(cell));
      entry["rows"].push_back({{"contact", Utf16ToUtf8(contact)}, {"cells", row}});
    }
    out["coils"].push_back(std::move(entry));
  }
  for (const ProjectProblem& problem : result.plan.problems)
    out["problems"].push_back({{"where", Where(result, problem)}, {"problem", problem.message}});
  out["written"] = Json::array();
  if (written) {
    for (std::size_t index : result.written) out["written"].push_back(Name(result, index));
  }
  return out;
}

// "reading drawings 12/500" on standard error while a terminal shows it.
std::function<void(std::size_t, std::size_t)> ProgressLine() {
  if (!::isatty(STDERR_FILENO)) return {};
  return [](std::size_t done, std::size_t total) {
    std::cerr << "\rreading drawings " << done << '/' << total << (done == total ? "\r\033[K" : "") << std::flush;
  };
}

}  // namespace

int RunUpdate(const UpdateCommandOptions& options) {
  const ProjectDescription project = LoadUpdateProject(options.project);
  UpdateOptions update;
  update.write = !options.dryRun;
  update.recover = options.recover;
  update.workers = options.jobs;
  update.progress = ProgressLine();
  const ProjectUpdateResult result = UpdateProject(project, update);
  NameDrawings(result, project.root);
  if (options.json) {
    std::cout << AsJson(result, update.write).dump(2) << '\n';
  } else {
    PrintChanges(result);
    PrintPresentations(result);
    std::cout << result.plan.changes.size() << " change(s); "
              << (update.write ? std::to_string(result.written.size()) + " drawing(s) written"
                               : "dry run, nothing written")
              << '\n';
  }
  if (options.report) {
    std::ofstream out(*options.report, std::ios::binary);
    out << HtmlReport(result);
    if (!out.flush()) FailOperation(*options.report + ": can't write the report");
  }
  for (const ProjectProblem& problem : result.plan.problems) {
    std::cerr << "ohm update: " << Where(result, problem) << ": " << problem.message << '\n';
  }
  return result.plan.problems.empty() ? kExitSuccess : kExitFailed;
}
