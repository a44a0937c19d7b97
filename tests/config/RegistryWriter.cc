// One of several processes that write settings into one registry store at
// once (OHM_REGISTRY_STORE names it).
//
// Usage: ohm_registry_writer <tag> <count>
// Opens the store and prints "ready"; then commands on standard input:
//   go    writes <tag>_<n> = "<tag>:<n>" for n below count, and "last" = tag,
//         in section "Contest"; prints "written <number of writes that succeeded>"
//   die   ends at once, leaving the store as a crash would
//   quit  ends
#include <cstdio>
#include <iostream>
#include <string>

#include "ohmutils/config/OhmRegSetting.h"
#include "win/Utf8.h"

namespace {

int WriteAll(const std::string& tag, int count) {
  int written = 0;
  for (int n = 0; n < count; ++n)
    written += OhmSetRegSetting(u"Contest", Utf8ToUtf16(tag + "_" + std::to_string(n)).c_str(),
                                Utf8ToUtf16(tag + ":" + std::to_string(n)).c_str());
  return written + OhmSetRegSetting(u"Contest", u"last", Utf8ToUtf16(tag).c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  CString ignored;
  OhmGetRegSetting(u"Contest", u"none", ignored);  // opens the store before the race
  std::cout << "ready" << std::endl;
  for (std::string command; std::getline(std::cin, command);) {
    if (command == "go") std::cout << "written " << WriteAll(argv[1], std::stoi(argv[2])) << std::endl;
    if (command == "die") std::_Exit(9);
    if (command == "quit") break;
  }
  return 0;
}
