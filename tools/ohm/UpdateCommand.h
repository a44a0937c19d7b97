// ohm update: a whole project's cross-references worked out from its
// drawings and written back into them (or only shown, with --dry-run). Each
// change is printed as drawing, handle, tag, old value -> new value; the
// coils shown as contact lines or table rows are printed with them; the
// problems go to standard error, and make the exit status 1.
#pragma once

#include <optional>
#include <string>

struct UpdateCommandOptions {
  std::string project;
  bool dryRun = false;
  bool json = false;
  bool recover = false;
  unsigned jobs = 0;
  std::optional<std::string> report;  // the HTML report's file
};

int RunUpdate(const UpdateCommandOptions& options);
