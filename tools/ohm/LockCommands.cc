#include "LockCommands.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <iostream>
#include <memory>
#include <optional>
#include <set>

#include "CommandError.h"
#include "Drawing.h"
#include "mfc/CStringList.h"
#include "ohmutils/host/OhmLispBridge.h"
#include "project/HostSession.h"
#include "win/Utf8.h"
#include "win/fs/PathMapping.h"
#include "win/module/Module.h"
#include "zd/app/ZdDocManager.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/lisp/ZdLispFileLocks.h"

extern char** environ;

namespace {

void AddAll(const std::vector<std::string>& drawings, CStringList& list) {
  for (const std::string& drawing : drawings) list.AddTail(CString(WindowsPathOf(drawing).c_str()));
}

std::set<std::u16string> SetOf(const CStringList& list) {
  std::set<std::u16string> names;
  for (POSITION pos = list.GetHeadPosition(); pos;) names.insert(list.GetNext(pos).GetString());
  return names;
}

// Runs `command` and waits for it. The command inherits the open lock files,
// so it holds the locks itself: if ohm is killed, the command keeps them
// until it ends, and no other process takes them while it runs.
int RunCommand(const std::vector<std::string>& command) {
  std::vector<char*> argv;
  for (const std::string& arg : command) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);
  const std::vector<int> locks = zdHeldDwgLockDescriptors();
  for (int fd : locks) ::fcntl(fd, F_SETFD, 0);
  pid_t child = 0;
  const int spawned = posix_spawnp(&child, argv[0], nullptr, nullptr, argv.data(), environ);
  for (int fd : locks) ::fcntl(fd, F_SETFD, FD_CLOEXEC);
  if (spawned != 0) FailOperation("can't run " + command.front());
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kExitFailed;
}

}  // namespace

int RunLock(const std::vector<std::string>& drawings, bool checkOnly, bool allOrNone,
            const std::vector<std::string>& command) {
  HostSession session(WindowsPathOf(drawings.front()));
  CStringList files, had;
  AddAll(drawings, files);
  LispCheckFileLockStatusAndLock(files, !checkOnly, allOrNone, had, true);  // false leaves `had` empty
  const std::set<std::u16string> gotten = SetOf(had);
  bool all = true;
  for (const std::string& drawing : drawings) {
    const bool got = gotten.count(WindowsPathOf(drawing)) != 0;
    all = all && got;
    std::cout << drawing << '\t' << (got ? (checkOnly ? "available" : "locked") : "not available") << '\n';
  }
  std::cout.flush();
  int status = all ? kExitSuccess : kExitFailed;
  if (all && !checkOnly && !command.empty()) status = RunCommand(command);
  if (!checkOnly && had.GetCount() != 0) LispUpdUnlockFiles(had, true);
  return status;
}

int RunUnlock(const std::vector<std::string>& drawings) {
  HostSession session(WindowsPathOf(drawings.front()));
  CStringArray files;
  for (const std::string& drawing : drawings) files.Add(CString(WindowsPathOf(drawing).c_str()));
  if (OhmUnlockFiles(files)) return kExitSuccess;
  for (INT_PTR i = 0; i < files.GetSize(); ++i) {
    const std::optional<std::string> posix = WindowsPathToPosix(files[i].GetString());
    std::cout << (posix ? *posix : Utf16ToUtf8(files[i].GetString())) << "\tnot held by this process\n";
  }
  return kExitFailed;
}
