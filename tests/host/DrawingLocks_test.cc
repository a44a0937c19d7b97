// Drawing file locks end to end: the library's lock operations against the
// host's counterparts, which take real lock files, in one process and across
// processes.
#include <gtest/gtest.h>

#include <set>

#include "LispCalls.h"
#include "support/ChildProcess.h"
#include "support/u16.h"
#include "zd/app/ZdDocManager.h"
#include "zd/lisp/ZdLispFileLocks.h"
#include "zd/lisp/ZdLisp_testing.h"

namespace {

namespace fs = std::filesystem;

class DrawingLocks : public ::testing::Test {
 protected:
  void SetUp() override {
    zd_testing::resetLisp();
    mDocument = zdDocManagerPtr()->addDocument(u"\\tmp\\locks.dwg", nullptr);
  }
  void TearDown() override {
    zdDocManagerPtr()->closeDocument(mDocument);
    for (const auto& entry : fs::directory_iterator(mFolder.posix()))
      EXPECT_NE(entry.path().extension(), ".ohmlock") << entry.path() << " left behind";
  }
  // Makes drawings d0.dwg ... and gives their Windows-form paths.
  Files Drawings(int count) {
    Files paths;
    for (int i = 0; i < count; ++i) {
      const std::string name = "d" + std::to_string(i) + ".dwg";
      mFolder.makeFile(name, "drawing\n");
      paths.push_back(mFolder.windows(name));
    }
    return paths;
  }
  static ZdDwgLockState State(const std::u16string& drawing) { return zdDwgLockState(drawing.c_str()); }

  TempFolder mFolder;
  ZdApDocument* mDocument = nullptr;
};

TEST_F(DrawingLocks, LockReportsWhatItGotAndUnlockReleasesIt) {
  const Files drawings = Drawings(2);
  const std::u16string missing = mFolder.windows("missing.dwg");
  EXPECT_EQ(LockCheck({drawings[0], missing, drawings[1]}, true, false, true), (Outcome{true, drawings}))
      << "the missing drawing can't be had";
  EXPECT_EQ(State(drawings[0]), ZdDwgLockState::HeldHere);
  EXPECT_TRUE(mFolder.exists("d0.dwg.ohmlock"));
  EXPECT_EQ(State(missing), ZdDwgLockState::NoDrawing);
  EXPECT_EQ(LockCheck(drawings, true, false, false), (Outcome{true, drawings})) << "no conflict for the holder";
  EXPECT_TRUE(UnlockList(drawings, true).result);
  for (const std::u16string& drawing : drawings) EXPECT_EQ(State(drawing), ZdDwgLockState::Free);
}

TEST_F(DrawingLocks, CheckWithoutLockTakesNothingAndAllOrNoneGivesBackWhatItTook) {
  const Files drawings = Drawings(2);
  EXPECT_EQ(Availability(drawings, false, false, false), (Outcome{true, drawings}));
  EXPECT_EQ(State(drawings[0]), ZdDwgLockState::Free);
  const Files withMissing{drawings[0], mFolder.windows("missing.dwg"), drawings[1]};
  EXPECT_EQ(Availability(withMissing, true, true, false), (Outcome{false, withMissing}));
  for (const std::u16string& drawing : drawings) EXPECT_EQ(State(drawing), ZdDwgLockState::Free);
}

TEST_F(DrawingLocks, UnlockReportsTheFilesItDidNotHold) {
  const Files drawings = Drawings(3);
  ASSERT_TRUE(Availability({drawings[1]}, true, false, false).result);
  EXPECT_EQ(Unlock(drawings), (Outcome{false, {drawings[0], drawings[2]}}));
  EXPECT_EQ(State(drawings[1]), ZdDwgLockState::Free);
  EXPECT_EQ(Unlock({drawings[1]}), (Outcome{false, {drawings[1]}})) << "released already: reported back";
}

// --- across processes ----------------------------------------------------------------

std::vector<std::string> Utf8(const Files& items) {
  std::vector<std::string> result;
  for (const std::u16string& item : items) result.push_back(U8(item));
  return result;
}

TEST_F(DrawingLocks, TwoProcessesContendingLockEachDrawingOnceAndReleaseAll) {
  const Files drawings = Drawings(40);
  Child first(OHM_LOCK_CONTENDER, Utf8(drawings)), second(OHM_LOCK_CONTENDER, Utf8(drawings));
  ASSERT_TRUE(first.started() && second.started());
  for (Child* side : {&first, &second}) side->send("go");
  const std::vector<std::string> gotFirst = first.readUntil("done");
  const std::vector<std::string> gotSecond = second.readUntil("done");

  std::multiset<std::string> all(gotFirst.begin(), gotFirst.end());
  all.insert(gotSecond.begin(), gotSecond.end());
  const std::vector<std::string> expected = Utf8(drawings);
  EXPECT_EQ(all, std::multiset<std::string>(expected.begin(), expected.end()))
      << "each drawing locked by exactly one: " << gotFirst.size() << " + " << gotSecond.size();

  // While they hold them, this process sees them held and gets none.
  for (const std::u16string& drawing : drawings) EXPECT_EQ(State(drawing), ZdDwgLockState::HeldElsewhere);
  EXPECT_EQ(LockCheck(drawings, true, false, true), (Outcome{false, {}}));

  for (Child* side : {&first, &second}) {
    side->send("release");
    EXPECT_EQ(side->readLine(), "released 1");
    side->send("quit");
    EXPECT_EQ(side->wait(), 0);
  }
  for (const std::u16string& drawing : drawings) EXPECT_EQ(State(drawing), ZdDwgLockState::Free);
}

TEST_F(DrawingLocks, LockOfADeadProcessIsStaleAndCanBeTakenOver) {
  const Files drawings = Drawings(2);
  Child crashing(OHM_LOCK_CONTENDER, Utf8(drawings));
  ASSERT_TRUE(crashing.started());
  crashing.send("go");
  EXPECT_EQ(crashing.readUntil("done").size(), 2u);
  EXPECT_EQ(State(drawings[0]), ZdDwgLockState::HeldElsewhere);
  crashing.send("die");
  EXPECT_EQ(crashing.wait(), 9);

  for (const std::u16string& drawing : drawings) EXPECT_EQ(State(drawing), ZdDwgLockState::Stale);
  EXPECT_EQ(LockCheck(drawings, true, false, true), (Outcome{true, drawings}));
  EXPECT_EQ(State(drawings[1]), ZdDwgLockState::HeldHere);
  EXPECT_TRUE(UnlockList(drawings, false).result);
}

}  // namespace
