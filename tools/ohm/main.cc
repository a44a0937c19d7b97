// ohm: the OhmUtils library from the shell. Cross-references of a project,
// and the classification, layouts and xdata of DXF drawings.
//
// Results go to standard output, messages to standard error. Exit status 0
// for success, 1 for an operation that failed, 2 for bad usage or bad input.
#include <CLI/CLI.hpp>
#include <iostream>
#include <optional>
#include <string>

#include "CommandError.h"
#include "Drawing.h"
#include "DrawingCommands.h"
#include "LockCommands.h"
#include "Project.h"
#include "SettingsCommands.h"
#include "UpdateCommand.h"
#include "XrefPrinter.h"
#include "XrefReport.h"

namespace {

struct Options {
  std::string project, drawing, handle;
  std::vector<std::string> drawings;
  std::optional<std::string> kind, app, run, value;
  std::string action, type, property, folder = ".", section, name;
  bool json = false, checkOnly = false, allOrNone = false;
  UpdateCommandOptions update;
};

// get takes no VALUE, set needs one.
void CheckValueFor(const Options& o) {
  if (o.action == "get" && o.value) FailBadInput("get takes no VALUE");
  if (o.action == "set" && !o.value) FailBadInput("set needs a VALUE");
}

int RunConfigCommand(const Options& o) {
  CheckValueFor(o);
  return RunConfig(o.folder, o.type, o.property, o.value);
}

int RunRegCommand(const Options& o) {
  CheckValueFor(o);
  return RunReg(o.section, o.name, o.value);
}

int RunLockCommand(const Options& o) {
  std::vector<std::string> command;
  if (o.run) command = {"/bin/sh", "-c", *o.run};
  return RunLock(o.drawings, o.checkOnly, o.allOrNone, command);
}

int RunXrefCommand(const Options& options) {
  const Project project = LoadProject(options.project);
  const std::vector<EntityReport> reports = RunXref(project);
  if (options.json) {
    PrintXrefJson(std::cout, reports);
  } else {
    PrintXrefText(std::cout, reports);
  }
  int status = kExitSuccess;
  for (const EntityReport& report : reports) {
    if (report.error.empty()) continue;
    std::cerr << "ohm xref: entity \"" << report.name << "\": " << report.error << '\n';
    status = kExitFailed;
  }
  return status;
}

void AddJsonFlag(CLI::App& command, Options& options) {
  command.add_flag("--json", options.json, "Print the result as JSON");
}

// The drawing commands read a damaged drawing with --recover.
void AddRecoverFlag(CLI::App& command) {
  command.add_flag_callback(
      "--recover", [] { SetRecoverDrawings(true); },
      "Repair what can be repaired in a damaged drawing, listing each repair");
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"ohm: cross-references and drawing queries of the OhmUtils library", "ohm"};
  app.set_version_flag("--version", std::string("ohm ") + OHM_VERSION);
  app.require_subcommand(1);
  Options options;
  int (*run)(const Options&) = nullptr;

  CLI::App* xref = app.add_subcommand("xref", "Print the cross-references of every entity of a project file");
  xref->add_option("PROJECT", options.project, "The project file (JSON)")->required();
  AddJsonFlag(*xref, options);
  xref->callback([&] { run = RunXrefCommand; });

  CLI::App* update =
      app.add_subcommand("update", "Work out a project's cross-references from its drawings and write them in");
  update->add_option("PROJECT", options.update.project, "A folder of DXF drawings, or a project file (JSON)")
      ->required();
  update->add_flag("--dry-run", options.update.dryRun, "Show the changes, write nothing");
  update->add_flag("--json", options.update.json, "Print the result as JSON");
  update->add_flag("--recover", options.update.recover, "Repair what can be repaired in damaged drawings");
  update->add_option("--jobs", options.update.jobs, "Drawings read at a time (default: one per core)");
  update->add_option("--report", options.update.report, "Write the cross-reference report to this HTML file");
  update->callback([&] { run = [](const Options& o) { return RunUpdate(o.update); }; });

  CLI::App* classify = app.add_subcommand("classify", "List the block references and tables of a drawing by kind");
  classify->add_option("DRAWING", options.drawing, "The drawing (DXF)")->required();
  classify->add_option("--kind", options.kind, "Only this kind, as the block query lists them (name or 0-18)");
  AddJsonFlag(*classify, options);
  AddRecoverFlag(*classify);
  classify->callback([&] { run = [](const Options& o) { return RunClassify(o.drawing, o.kind, o.json, std::cout); }; });

  CLI::App* layouts = app.add_subcommand("layouts", "List the paper space layouts of a drawing in tab order");
  layouts->add_option("DRAWING", options.drawing, "The drawing (DXF)")->required();
  AddJsonFlag(*layouts, options);
  AddRecoverFlag(*layouts);
  layouts->callback([&] { run = [](const Options& o) { return RunLayouts(o.drawing, o.json, std::cout); }; });

  CLI::App* xdata = app.add_subcommand("xdata", "Print the xdata of an object of a drawing");
  xdata->add_option("DRAWING", options.drawing, "The drawing (DXF)")->required();
  xdata->add_option("HANDLE", options.handle, "The object's handle (hexadecimal)")->required();
  xdata->add_option("APP", options.app, "Only the xdata of this application");
  AddJsonFlag(*xdata, options);
  AddRecoverFlag(*xdata);
  xdata->callback(
      [&] { run = [](const Options& o) { return RunXData(o.drawing, o.handle, o.app, o.json, std::cout); }; });

  CLI::App* lock = app.add_subcommand("lock", "Take the drawings' locks; they last while ohm runs");
  lock->add_option("DRAWING", options.drawings, "The drawings")->required();
  lock->add_flag("--check", options.checkOnly, "Only check which drawings could be locked");
  lock->add_flag("--all", options.allOrNone, "Lock all drawings or none");
  lock->add_option("--run", options.run, "A shell command to run while the locks are held");
  lock->callback([&] { run = RunLockCommand; });

  CLI::App* unlock = app.add_subcommand("unlock", "Release the drawings' locks that this process holds");
  unlock->add_option("DRAWING", options.drawings, "The drawings")->required();
  unlock->callback([&] { run = [](const Options& o) { return RunUnlock(o.drawings); }; });

  CLI::App* config = app.add_subcommand("config", "Get or set a property of the XML settings file App.config");
  config->add_option("ACTION", options.action, "get or set")->required()->check(CLI::IsMember({"get", "set"}));
  config->add_option("TYPE", options.type, "The setting type: a name such as SchSortOrder, or 0 to 5")->required();
  config->add_option("PROPERTY", options.property, "The property's name")->required();
  config->add_option("VALUE", options.value, "The value to set");
  config->add_option("--folder", options.folder, "The folder of App.config (default: the current folder)");
  config->callback([&] { run = RunConfigCommand; });

  CLI::App* reg = app.add_subcommand("reg", "Get or set a setting of the suite in the registry store");
  reg->add_option("ACTION", options.action, "get or set")->required()->check(CLI::IsMember({"get", "set"}));
  reg->add_option("SECTION", options.section, "The settings section")->required();
  reg->add_option("NAME", options.name, "The setting's name")->required();
  reg->add_option("VALUE", options.value, "The value to set");
  reg->callback([&] { run = RunRegCommand; });

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kExitSuccess : kExitBadInput;
  }
  try {
    return run(options);
  } catch (const CommandError& error) {
    std::cerr << "ohm: " << error.what() << '\n';
    return error.status();
  } catch (const std::exception& error) {
    std::cerr << "ohm: " << error.what() << '\n';
    return kExitFailed;
  }
}
