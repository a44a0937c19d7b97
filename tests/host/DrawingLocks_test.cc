// Drawing file locks end to end: the library's lock operations against the
// host's counterparts, which take real lock files, in one process and across
// processes.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "HostTestSupport.h"
#include "ohmutils/host/OhmLispBridge.h"
#include "support/u16.h"
#include "zd/app/ZdDocManager.h"
#include "zd/lisp/ZdLispFileLocks.h"
#include "zd/lisp/ZdLisp_testing.h"

namespace {

using host_test::Child;
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
  std::vector<std::u16string> Drawings(int count) {
    std::vector<std::u16string> paths;
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

void Fill(CStringList& list, const std::vector<std::u16string>& items) {
  list.RemoveAll();
  for (const std::u16string& item : items) list.AddTail(CString(item));
}

std::vector<std::u16string> Items(const CStringList& list) {
  std::vector<std::u16string> items;
  for (POSITION pos = list.GetHeadPosition(); pos;) items.push_back(list.GetNext(pos).str());
  return items;
}

std::vector<std::u16string> Items(const CStringArray& array) {
  std::vector<std::u16string> items;
  for (INT_PTR i = 0; i < array.GetSize(); ++i) items.push_back(array[i].str());
  return items;
}

TEST_F(DrawingLocks, LockReportsWhatItGotAndUnlockReleasesIt) {
  std::vector<std::u16string> drawings = Drawings(2);
  const std::u16string missing = mFolder.windows("missing.dwg");
  CStringList files, got;
  Fill(files, {drawings[0], missing, drawings[1]});
  ASSERT_TRUE(LispCheckFileLockStatusAndLock(files, true, false, got, true));
  EXPECT_EQ(Items(got), drawings);  // the missing drawing can't be had
  EXPECT_EQ(State(drawings[0]), ZdDwgLockState::HeldHere);
  EXPECT_TRUE(mFolder.exists("d0.dwg.ohmlock"));
  EXPECT_EQ(State(missing), ZdDwgLockState::NoDrawing);

  // Locking again is no conflict for the holder.
  EXPECT_TRUE(LispCheckFileLockStatusAndLock(files, true, false, got, false));
  EXPECT_EQ(Items(got), drawings);

  EXPECT_TRUE(LispUpdUnlockFiles(got, true));
  EXPECT_EQ(State(drawings[0]), ZdDwgLockState::Free);
  EXPECT_EQ(State(drawings[1]), ZdDwgLockState::Free);
}

TEST_F(DrawingLocks, CheckWithoutLockTakesNothing) {
  const std::vector<std::u16string> drawings = Drawings(2);
  CStringArray files;
  for (const std::u16string& d : drawings) files.Add(CString(d));
  EXPECT_TRUE(OhmCheckFilesAvailability(files, false, false, false));
  EXPECT_EQ(Items(files), drawings);
  EXPECT_EQ(State(drawings[0]), ZdDwgLockState::Free);
}

TEST_F(DrawingLocks, AllOrNoneGivesBackWhatItTookWhenOneFileCantBeHad) {
  const std::vector<std::u16string> drawings = Drawings(2);
  CStringArray files;
  files.Add(CString(drawings[0]));
  files.Add(CString(mFolder.windows("missing.dwg")));
  files.Add(CString(drawings[1]));
  EXPECT_FALSE(OhmCheckFilesAvailability(files, true, true, false));
  EXPECT_EQ(files.GetSize(), 3);
  EXPECT_EQ(State(drawings[0]), ZdDwgLockState::Free);
  EXPECT_EQ(State(drawings[1]), ZdDwgLockState::Free);
}

TEST_F(DrawingLocks, UnlockReportsTheFilesItDidNotHold) {
  const std::vector<std::u16string> drawings = Drawings(3);
  CStringArray lockThese;
  lockThese.Add(CString(drawings[1]));
  ASSERT_TRUE(OhmCheckFilesAvailability(lockThese, true, false, false));

  CStringArray release;
  for (const std::u16string& d : drawings) release.Add(CString(d));
  EXPECT_FALSE(OhmUnlockFiles(release));
  EXPECT_EQ(Items(release), (std::vector<std::u16string>{drawings[0], drawings[2]}));
  EXPECT_EQ(State(drawings[1]), ZdDwgLockState::Free);

  CStringArray again;
  again.Add(CString(drawings[1]));
  EXPECT_FALSE(OhmUnlockFiles(again));  // released already: reported back
}

// --- across processes ----------------------------------------------------------------

std::vector<std::string> Utf8(const std::vector<std::u16string>& items) {
  std::vector<std::string> result;
  for (const std::u16string& item : items) result.push_back(U8(item));
  return result;
}

TEST_F(DrawingLocks, TwoProcessesContendingLockEachDrawingOnceAndReleaseAll) {
  const std::vector<std::u16string> drawings = Drawings(40);
  Child first(OHM_LOCK_CONTENDER, Utf8(drawings)), second(OHM_LOCK_CONTENDER, Utf8(drawings));
  ASSERT_TRUE(first.started() && second.started());
  first.send("go");
  second.send("go");
  const std::vector<std::string> gotFirst = first.readUntil("done");
  const std::vector<std::string> gotSecond = second.readUntil("done");

  std::multiset<std::string> all(gotFirst.begin(), gotFirst.end());
  all.insert(gotSecond.begin(), gotSecond.end());
  const std::vector<std::string> expected = Utf8(drawings);
  EXPECT_EQ(all, std::multiset<std::string>(expected.begin(), expected.end()))
      << "each drawing locked by exactly one: " << gotFirst.size() << " + " << gotSecond.size();

  // While they hold them, this process sees them held and gets none.
  for (const std::u16string& drawing : drawings) EXPECT_EQ(State(drawing), ZdDwgLockState::HeldElsewhere);
  CStringList files, got;
  Fill(files, drawings);
  EXPECT_FALSE(LispCheckFileLockStatusAndLock(files, true, false, got, true));
  EXPECT_TRUE(got.IsEmpty());

  first.send("release");
  second.send("release");
  EXPECT_EQ(first.readLine(), "released 1");
  EXPECT_EQ(second.readLine(), "released 1");
  first.send("quit");
  second.send("quit");
  EXPECT_EQ(first.wait(), 0);
  EXPECT_EQ(second.wait(), 0);
  for (const std::u16string& drawing : drawings) EXPECT_EQ(State(drawing), ZdDwgLockState::Free);
}

TEST_F(DrawingLocks, LockOfADeadProcessIsStaleAndCanBeTakenOver) {
  const std::vector<std::u16string> drawings = Drawings(2);
  Child crashing(OHM_LOCK_CONTENDER, Utf8(drawings));
  ASSERT_TRUE(crashing.started());
  crashing.send("go");
  EXPECT_EQ(crashing.readUntil("done").size(), 2u);
  EXPECT_EQ(State(drawings[0]), ZdDwgLockState::HeldElsewhere);
  crashing.send("die");
  EXPECT_EQ(crashing.wait(), 9);

  for (const std::u16string& drawing : drawings) EXPECT_EQ(State(drawing), ZdDwgLockState::Stale);
  CStringList files, got;
  Fill(files, drawings);
  ASSERT_TRUE(LispCheckFileLockStatusAndLock(files, true, false, got, true));
  EXPECT_EQ(Items(got), drawings);
  EXPECT_EQ(State(drawings[1]), ZdDwgLockState::HeldHere);
  EXPECT_TRUE(LispUpdUnlockFiles(got, false));
}

}  // namespace
