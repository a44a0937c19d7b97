// main() of every test program, with a listener that fails any test which
// leaves something taken from the host stand-in behind: open database
// objects, live iterators, value list nodes or strings, file searches,
// registry keys, loaded libraries, COM and MFC objects, system buffers.
#include <gtest/gtest.h>

#include <array>

#include "com/XmlDom_testing.h"
#include "mfc/AfxExtensionModule_testing.h"
#include "win/fs/FileFunctions_testing.h"
#include "win/module/FormatMessage_testing.h"
#include "win/module/Module_testing.h"
#include "win/module/NetWksta_testing.h"
#include "win/registry/Registry_testing.h"
#include "zd/ZdValueNode_testing.h"
#include "zd/app/ZdDocManager_testing.h"
#include "zd/db/ZdDbDatabase_testing.h"
#include "zd/ui/ZdAutomation_testing.h"

namespace {

struct HostCount {
  const char* what;
  long (*count)();
};

const std::array<HostCount, 13> kHostCounts{{
    {"open database objects", [] { return zd_testing::openObjectCount(); }},
    {"live object iterators", [] { return zd_testing::liveObjectIterators(); }},
    {"live document iterators", [] { return zd_testing::liveDocumentIterators(); }},
    {"live value nodes", [] { return zd_testing::liveValueNodes(); }},
    {"live value strings", [] { return zd_testing::liveValueStrings(); }},
    {"open file searches", [] { return win_testing::liveFindHandles(); }},
    {"open registry keys", [] { return win_testing::openRegistryKeys(); }},
    {"loaded libraries", [] { return win_testing::loadedLibraryCount(); }},
    {"live DOM objects", [] { return com_testing::liveDomObjects(); }},
    {"live CDynLinkLibrary objects", [] { return mfc_testing::liveDynLinkLibraries(); }},
    {"LocalAlloc blocks", [] { return win_testing::liveLocalBlocks(); }},
    {"NetApi buffers", [] { return win_testing::liveNetApiBuffers(); }},
    {"automation references", [] { return zd_testing::automationReferences(); }},
}};

// Compares the counts before and after each test: a test may keep things for
// its whole run (a database in a fixture), but must give back what it took.
class HostLeakCheck : public ::testing::EmptyTestEventListener {
  void OnTestStart(const ::testing::TestInfo&) override {
    for (std::size_t i = 0; i < kHostCounts.size(); ++i) mBefore[i] = kHostCounts[i].count();
  }
  void OnTestEnd(const ::testing::TestInfo&) override {
    for (std::size_t i = 0; i < kHostCounts.size(); ++i)
      EXPECT_EQ(kHostCounts[i].count(), mBefore[i]) << kHostCounts[i].what << " left behind by the test";
  }
  std::array<long, kHostCounts.size()> mBefore{};
};

}  // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::UnitTest::GetInstance()->listeners().Append(new HostLeakCheck);
  return RUN_ALL_TESTS();
}
