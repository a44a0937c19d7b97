// The settings subcommands of ohm: a property of the XML settings file
// "App.config" in a folder, and a named setting of the suite in the
// registry store (OHM_REGISTRY_STORE, else the user's XDG config folder).
#pragma once

#include <optional>
#include <string>

// Prints (get) or sets and saves (set, with `value`) property `property` of
// setting type `type` (a name such as "SchSortOrder", or 0 to 5) in
// `folder`/App.config. 2 for a file that is missing or not a settings file,
// 1 for a failed DOM operation.
int RunConfig(const std::string& folder, const std::string& type, const std::string& property,
              const std::optional<std::string>& value);
// Prints (get) or writes (set, with `value`) setting `name` of `section`.
// 1 when the setting isn't there or can't be written.
int RunReg(const std::string& section, const std::string& name, const std::optional<std::string>& value);
