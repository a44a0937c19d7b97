// The platform's smaller services: system message texts and the local heap,
// message boxes through the UI sink, MFC's extension modules and message
// box, and the workstation query.
#include <gtest/gtest.h>

#include <fstream>
#include <tuple>

#include "mfc/AfxExtensionModule.h"
#include "mfc/AfxExtensionModule_testing.h"
#include "mfc/AfxMessageBox.h"
#include "mfc/CString.h"
#include "support/platwinLastError.h"
#include "support/u16.h"
#include "win/LastError.h"
#include "win/WinError.h"
#include "win/fs/PathMapping.h"
#include "win/module/FormatMessage.h"
#include "win/module/Module.h"
#include "win/module/NetWksta.h"
#include "win/ui/MessageBox.h"
#include "win/ui/UiSink_testing.h"

namespace {

constexpr DWORD kSystemTextFlags =
    FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;

TEST(FormatMessage, AllocatedSystemTextIsFreedWithLocalFree) {
  LPWSTR text = nullptr;
  const DWORD length = FormatMessageW(kSystemTextFlags, nullptr, ERROR_MOD_NOT_FOUND, LANG_NEUTRAL_SUBLANG_DEFAULT,
                                      reinterpret_cast<LPWSTR>(&text), 0, nullptr);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(std::u16string(text, length), u"The specified module could not be found.\r\n");
  EXPECT_EQ(LocalFree(text), nullptr);
  int stranger = 0;
  EXPECT_EQ(LocalFree(&stranger), &stranger);
  EXPECT_EQ(LocalFree(nullptr), nullptr);
}

TEST(FormatMessage, FailuresWriteNothing) {
  // What is asked: flags, id, language and buffer size; and the error.
  const std::tuple<const char*, DWORD, DWORD, DWORD, DWORD, LONG> cases[] = {
      {"unknown code", FORMAT_MESSAGE_FROM_SYSTEM, 99999, 0, 100, ERROR_MR_MID_NOT_FOUND},
      {"not from the system", FORMAT_MESSAGE_FROM_STRING, 2, 0, 100, ERROR_MR_MID_NOT_FOUND},
      {"other language", FORMAT_MESSAGE_FROM_SYSTEM, 2, 0x0407, 100, ERROR_RESOURCE_LANG_NOT_FOUND},
      {"buffer too small", FORMAT_MESSAGE_FROM_SYSTEM, 2, 0x0409, 10, ERROR_INSUFFICIENT_BUFFER},
  };
  for (const auto& [label, flags, id, language, size, error] : cases) {
    char16_t buffer[100] = u"kept";
    EXPECT_TRUE(FailsWith([&] { return FormatMessageW(flags, nullptr, id, language, buffer, size, nullptr); }, error))
        << label;
    EXPECT_EQ(std::u16string(buffer), u"kept") << label;
  }
  char16_t buffer[100];
  EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 2, 0, buffer, 100, nullptr), 44u);
  EXPECT_EQ(std::u16string(buffer), u"The system cannot find the file specified.\r\n");
}

TEST(MessageBox, SinkCapturesAndAnswersAsScripted) {
  {
    win_testing::RecordingUiSink ui;
    ui.answerNext(IDNO);
    EXPECT_EQ(MessageBoxW(nullptr, u"Save?", u"Zeda", MB_YESNO), IDNO);
    EXPECT_EQ(MessageBoxW(nullptr, nullptr, nullptr, MB_OKCANCEL | MB_DEFBUTTON2), IDCANCEL);
    EXPECT_EQ(AfxMessageBox(u"Done.", MB_ICONINFORMATION), IDOK);
    ASSERT_EQ(ui.boxes().size(), 3u);
    EXPECT_EQ(ui.boxes()[0].text, u"Save?");
    EXPECT_EQ(ui.boxes()[1].caption, u"Error");
    EXPECT_EQ(ui.boxes()[1].text, u"");
    EXPECT_EQ(ui.boxes()[2].caption, u"Zeda");
    EXPECT_EQ(ui.boxes()[2].type, MB_ICONINFORMATION);
    EXPECT_EQ(&CurrentUiSink(), &ui);
  }
  EXPECT_EQ(dynamic_cast<win_testing::RecordingUiSink*>(&CurrentUiSink()), nullptr);
}

// --- extension modules --------------------------------------------------------------------

TEST(AfxExtensionModule, InitChainAndTerm) {
  const HMODULE resources = LoadLibraryW(PosixPathToWindows(std::string(OHM_LIBRARY_DIR) + "/OhmUtilsRes.dll").c_str());
  ASSERT_NE(resources, nullptr);
  AFX_EXTENSION_MODULE state{};
  EXPECT_FALSE(AfxInitExtensionModule(state, nullptr));
  mfc_testing::failNextInitExtensionModule();
  EXPECT_FALSE(AfxInitExtensionModule(state, resources));
  EXPECT_FALSE(state.bInitialized);
  ASSERT_TRUE(AfxInitExtensionModule(state, resources));
  EXPECT_TRUE(AfxInitExtensionModule(state, resources));  // once is enough
  EXPECT_EQ(state.hResource, resources);

  CString text;
  EXPECT_FALSE(text.LoadString(112));  // not in the chain yet
  new CDynLinkLibrary(state);
  EXPECT_TRUE(text.LoadString(112));  // found through the chain
  win_testing::RecordingUiSink ui;
  AfxMessageBox(113);
  ASSERT_EQ(ui.boxes().size(), 1u);
  EXPECT_EQ(ui.boxes()[0].text, CString(text.LoadString(113) ? text : CString()).str());

  AfxTermExtensionModule(state);
  EXPECT_FALSE(state.bInitialized);
  EXPECT_FALSE(text.LoadString(112));
  FreeLibrary(resources);
}

// --- workstation -------------------------------------------------------------------------------

TEST(NetWksta, ReportsTheRunningKernelsVersionForThisMachineOnly) {
  std::ifstream release("/proc/sys/kernel/osrelease");
  DWORD major = 0, minor = 0;
  char dot = 0;
  ASSERT_TRUE(release >> major >> dot >> minor);
  LPBYTE buffer = nullptr;
  ASSERT_EQ(NetWkstaGetInfo(nullptr, 100, &buffer), NERR_Success);
  const auto* info = reinterpret_cast<const WKSTA_INFO_100*>(buffer);
  EXPECT_EQ(info->wki100_platform_id, PLATFORM_ID_NT);
  EXPECT_EQ(info->wki100_ver_major, major);
  EXPECT_EQ(info->wki100_ver_minor, minor);
  EXPECT_NE(std::u16string(info->wki100_computername), u"");
  // This machine by its name, another machine, another level: failures leave the buffer alone.
  std::u16string self = std::u16string(u"\\\\") + info->wki100_computername, other = u"\\\\SOME-OTHER-MACHINE";
  const std::tuple<LPWSTR, DWORD, LONG> cases[] = {
      {self.data(), 100, NERR_Success},
      {other.data(), 100, ERROR_BAD_NETPATH},
      {nullptr, 101, ERROR_INVALID_LEVEL},
  };
  for (const auto& [server, level, status] : cases) {
    LPBYTE again = nullptr;
    EXPECT_EQ(NetWkstaGetInfo(server, level, &again), static_cast<NET_API_STATUS>(status));
    EXPECT_EQ(again == nullptr, status != NERR_Success);
    EXPECT_EQ(NetApiBufferFree(again), NERR_Success);  // null is freed as well
  }
  EXPECT_EQ(NetApiBufferFree(buffer), NERR_Success);
  EXPECT_EQ(NetApiBufferFree(buffer), static_cast<NET_API_STATUS>(ERROR_INVALID_PARAMETER));
  EXPECT_EQ(NetWkstaGetInfo(nullptr, 100, nullptr), static_cast<NET_API_STATUS>(ERROR_INVALID_PARAMETER));
}

}  // namespace
