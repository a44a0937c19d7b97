// Fuzz target of the project files of ohm xref and ohm update: any bytes
// give a project or a refusal that names its place (CommandError), never a
// crash, a hang or a leak, and a refusal is the same on a second reading.
#include <cstddef>
#include <cstdint>
#include <string>

#include "CommandError.h"
#include "Project.h"

namespace {

std::string Refusal(const std::string& text, bool update) {
  try {
    if (update) {
      ParseUpdateProject(text, "fuzz.json");
    } else {
      ParseProject(text, "fuzz.json");
    }
  } catch (const CommandError& error) {
    if (error.status() != kExitBadInput) __builtin_trap();
    return error.what();
  }
  return {};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  for (bool update : {false, true}) {
    if (Refusal(text, update) != Refusal(text, update)) __builtin_trap();
  }
  return 0;
}
