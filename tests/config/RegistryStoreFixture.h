// What the registry tests of the library share: a store file of the test's
// own, the module attached for the whole suite (so its resource library
// supplies the message texts) and message boxes captured. (Every test
// program's main checks that a test closed the keys it opened.)
#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "ohmutils/host/OhmUtilsModule.h"
#include "support/TempFolder.h"
#include "win/module/Module.h"
#include "win/registry/Registry_testing.h"
#include "win/ui/UiSink_testing.h"

class RegistryStoreFixture : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(DllMain(Module(), DLL_PROCESS_ATTACH, nullptr)); }
  static void TearDownTestSuite() { DllMain(Module(), DLL_PROCESS_DETACH, nullptr); }
  static HMODULE Module() { return GetModuleHandleW(u"OhmUtils.dll"); }

  void SetUp() override {
    mStorePath = mFolder.posix("registry.db");
    win_testing::useRegistryStore(mStorePath);
    mSink.emplace();
  }
  void TearDown() override { win_testing::useRegistryStore(""); }
  const std::vector<UiMessageBox>& boxes() const { return mSink->boxes(); }

  TempFolder mFolder;
  std::string mStorePath;
  std::optional<win_testing::RecordingUiSink> mSink;
};
