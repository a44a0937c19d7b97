// One side of a contest for drawing locks: a session with a current drawing
// that asks the suite's lock check, through the library, to lock the drawings
// it is given, and releases them on request.
//
// Usage: ohm_lock_contender <drawing>... (Windows-form paths)
// Commands on standard input, one a line:
//   go       lock; prints each drawing it got, then "done"
//   release  unlocks what it got; prints "released 1" (all) or "released 0"
//   die      ends at once without releasing anything (a crashed session)
//   quit     ends
#include <cstdio>
#include <iostream>
#include <string>

#include "ohmutils/host/OhmLispBridge.h"
#include "win/Utf8.h"
#include "zd/app/ZdDocManager.h"

namespace {

void Lock(CStringList& drawings, CStringList& got) {
  LispCheckFileLockStatusAndLock(drawings, true, false, got, true);
  for (POSITION pos = got.GetHeadPosition(); pos;) std::cout << Utf16ToUtf8(got.GetNext(pos).str()) << '\n';
  std::cout << "done" << std::endl;
}

void Release(CStringList& got) {
  std::cout << "released " << (got.IsEmpty() || LispUpdUnlockFiles(got, true)) << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
  zdDocManagerPtr()->addDocument(u"\\tmp\\contender.dwg", nullptr);
  CStringList drawings, got;
  for (int i = 1; i < argc; ++i) drawings.AddTail(CString(Utf8ToUtf16(argv[i])));
  for (std::string command; std::getline(std::cin, command);) {
    if (command == "go") Lock(drawings, got);
    if (command == "release") Release(got);
    if (command == "die") std::_Exit(9);
    if (command == "quit") break;
  }
  return 0;
}
