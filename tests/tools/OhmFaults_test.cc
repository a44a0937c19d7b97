// ohm when processes die under it: a lock holder killed while its command
// runs, and the files that saves killed midway leave beside what they save.
#include <signal.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <chrono>
#include <string>
#include <thread>

#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace {

TEST(OhmFaults, AKilledLockHolderKeepsTheLockUntilItsCommandEnds) {
  for (const int signal : {SIGKILL, SIGTERM}) {
    SCOPED_TRACE(signal);
    TempFolder folder, holder, checker;
    folder.makeFile("a.dxf");
    const std::string drawing = folder.posix("a.dxf"), done = folder.posix("done");
    const pid_t ohm = Spawn(OHM_TOOL, holder, {"lock", drawing, "--run", "sleep 0.3; echo done > " + done});
    ASSERT_TRUE(WaitForText(holder.posix("out"), "locked"));
    ::kill(ohm, signal);
    Wait(ohm);
    EXPECT_EQ(Wait(Spawn(OHM_TOOL, checker, {"lock", "--check", drawing})), 1);  // the command still holds it
    EXPECT_NE(ReadFile(checker.posix("out")).find("not available"), std::string::npos);
    EXPECT_TRUE(WaitForText(done, "done"));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(Wait(Spawn(OHM_TOOL, checker, {"lock", "--check", drawing})), 0);  // and gives it back when it ends
  }
}

TEST(OhmFaults, ASaveClearsWhatSavesOfDeadProcessesLeftBesideTheFile) {
  TempFolder folder;
  folder.makeFile("cfg/App.config",
                  "<?xml version=\"1.0\"?>\n<Settings>\n  <Setting Name=\"SchSortOrder\">\n"
                  "    <Property Name=\"Order\" Value=\"1\"/>\n  </Setting>\n</Settings>\n");
  const std::string dead = std::to_string(DeadProcess());
  const std::string left = "cfg/App.config.~" + dead + ".3";
  const std::string living = "cfg/App.config.~" + std::to_string(::getpid()) + ".900";  // a save under way
  const std::string other = "cfg/Other.config.~" + dead + ".0";
  for (const std::string& name : {left, living, other}) folder.makeFile(name, "half a save");
  EXPECT_EQ(Wait(Spawn(OHM_TOOL, folder, {"config", "set", "3", "Order", "2", "--folder", folder.posix("cfg")})), 0);
  EXPECT_FALSE(folder.exists(left));
  EXPECT_TRUE(folder.exists(living));
  EXPECT_TRUE(folder.exists(other));
}

}  // namespace
