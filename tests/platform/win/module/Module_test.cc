// Modules, resources and version blocks of the platform stand-in, against the
// project's own resource libraries.
#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "mfc/CString.h"
#include "support/TempFolder.h"
#include "support/platwinLastError.h"
#include "support/u16.h"
#include "win/LastError.h"
#include "win/WinError.h"
#include "win/fs/PathMapping.h"
#include "win/module/Module.h"
#include "win/module/Module_testing.h"
#include "win/module/Resource.h"
#include "win/module/VersionInfo.h"

namespace {

namespace fs = std::filesystem;

const fs::path kLibraryDir = OHM_LIBRARY_DIR;

TEST(ModuleNameToFileName, OneRuleForDllNames) {
  const std::pair<std::u16string, std::u16string> cases[] = {
      {u"C:\\x\\Y.DLL", u"C:\\x\\libY.so"},
      {u"/a/b/c.Dll", u"/a/b/libc.so"},
      {u"x.dllx", u"x.dllx"},
      {u"a.dll\\b", u"a.dll\\b"},
      {u".dll", u".dll"},
  };
  for (const auto& [name, file] : cases) EXPECT_EQ(ModuleNameToFileName(name), file) << U8(name);
}

class Modules : public ::testing::Test {
 protected:
  static HMODULE Load(const char* dll) { return LoadLibraryW(Windows(kLibraryDir / dll).c_str()); }
  TempFolder mTemp;
};

TEST_F(Modules, LoadByPathTakesAReferenceAndFreeGivesItBack) {
  const HMODULE first = Load("OhmUtilsRes.dll");
  ASSERT_NE(first, nullptr);
  const HMODULE second = Load("OhmUtilsRes.dll");
  EXPECT_EQ(second, first);
  EXPECT_EQ(win_testing::loadedLibraryPaths().back(), (kLibraryDir / "libOhmUtilsRes.so").string());
  EXPECT_EQ(GetModuleHandleW(u"ohmutilsres.DLL"), first);  // by name, ignoring case
  EXPECT_TRUE(FreeLibrary(first));
  EXPECT_TRUE(FreeLibrary(second));
  EXPECT_TRUE(FailsWith([&] { return FreeLibrary(first); }, ERROR_INVALID_HANDLE));
}

TEST_F(Modules, LoadFailuresSayWhy) {
  mTemp.makeFile("not_a_module.txt", "not a module\n");
  const std::pair<std::u16string, LONG> cases[] = {
      {u"", ERROR_INVALID_PARAMETER},
      {u"NoSuchLibrary.dll", ERROR_MOD_NOT_FOUND},
      {Windows(kLibraryDir / "NoSuchLibrary.dll"), ERROR_MOD_NOT_FOUND},
      {mTemp.windows("not_a_module.txt"), ERROR_BAD_EXE_FORMAT},
  };
  for (const auto& [name, error] : cases) {
    EXPECT_TRUE(FailsWith([&] { return LoadLibraryW(name.c_str()); }, error)) << U8(name);
  }
  EXPECT_EQ(LoadLibraryW(nullptr), nullptr);
}

TEST_F(Modules, ProgramPathAndShortBuffers) {
  char16_t path[4096];
  const DWORD length = GetModuleFileNameW(nullptr, path, 4096);
  EXPECT_EQ(std::u16string(path, length), Windows(fs::read_symlink("/proc/self/exe")));
  char16_t shortBuffer[6] = u"#####";
  SetLastError(0);
  EXPECT_EQ(GetModuleFileNameW(nullptr, shortBuffer, 5), 5u);
  EXPECT_EQ(std::u16string(shortBuffer), std::u16string(path, 4));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
  EXPECT_TRUE(FailsWith([&] { return GetModuleFileNameW(reinterpret_cast<HMODULE>(path), path, 4096); },
                        ERROR_INVALID_HANDLE));  // not a module
}

// --- strings and raw data ------------------------------------------------------------

class Resources : public Modules {
 protected:
  void SetUp() override { ASSERT_TRUE(mUtils && mCanned); }
  void TearDown() override {
    FreeLibrary(mUtils);
    FreeLibrary(mCanned);
  }
  const HMODULE mUtils = Load("OhmUtilsRes.dll");
  const HMODULE mCanned = Load("OHM_MBRES.dll");
};

TEST_F(Resources, LoadStringCopiesWhatFitsAndTerminates) {
  const WCHAR* text = nullptr;
  const int length = LoadStringW(mUtils, 112, reinterpret_cast<LPWSTR>(&text), 0);
  ASSERT_GT(length, 4);
  const std::u16string whole(text, static_cast<std::size_t>(length));
  // The buffer's size and the units copied.
  for (const auto& [size, copied] : {std::pair{length + 1, length}, {length, length - 1}, {1, 0}}) {
    SCOPED_TRACE(size);
    std::u16string buffer(1001, u'#');
    EXPECT_EQ(LoadStringW(mUtils, 112, buffer.data(), size), copied);
    EXPECT_EQ(buffer.substr(0, static_cast<std::size_t>(copied) + 1),
              whole.substr(0, static_cast<std::size_t>(copied)) + u'\0');
  }
}

TEST_F(Resources, MissingStringsLeaveTheBufferAlone) {
  // Id not there, a module without strings, the program without resources.
  for (const auto& [module, id, error] : {std::tuple{mUtils, 139u, ERROR_RESOURCE_NAME_NOT_FOUND},
                                          {mCanned, 112u, ERROR_RESOURCE_TYPE_NOT_FOUND},
                                          {HMODULE{}, 112u, ERROR_RESOURCE_DATA_NOT_FOUND}}) {
    char16_t buffer[8] = u"kept";
    EXPECT_TRUE(FailsWith([&] { return LoadStringW(module, id, buffer, 8); }, error)) << id;
    EXPECT_EQ(std::u16string(buffer), u"kept");
  }
}

TEST_F(Resources, FindResourceSaysWhatIsMissing) {
  // Another id, a library without raw data, a resource by name.
  for (const auto& [module, name, error] :
       {std::tuple{mCanned, static_cast<LPCWSTR>(MAKEINTRESOURCEW(235)), ERROR_RESOURCE_NAME_NOT_FOUND},
        {mUtils, MAKEINTRESOURCEW(234), ERROR_RESOURCE_TYPE_NOT_FOUND},
        {mCanned, u"CANNED", ERROR_RESOURCE_NAME_NOT_FOUND}}) {
    EXPECT_TRUE(FailsWith([&] { return FindResourceW(module, name, RT_RCDATA); }, error));
  }
  EXPECT_EQ(SizeofResource(mCanned, nullptr), 0u);
  EXPECT_EQ(LoadResource(mCanned, nullptr), nullptr);
}

// --- version blocks ------------------------------------------------------------------------

TEST(VersionInfo, ResourceLibrariesCarryTheProjectVersion) {
  for (const char* library : {"libOhmUtilsRes.so", "libOhmUtils.so"}) {
    SCOPED_TRACE(library);
    const std::u16string file = Windows(kLibraryDir / library);
    DWORD handle = 7;
    const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &handle);
    EXPECT_EQ(handle, 0u);
    ASSERT_EQ(size, sizeof(VersionBlock));
    std::vector<BYTE> block(size);
    ASSERT_TRUE(GetFileVersionInfoW(file.c_str(), 0, size, block.data()));
    LPVOID value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), u"\\", &value, &length));
    ASSERT_EQ(length, sizeof(VS_FIXEDFILEINFO));
    const auto* info = static_cast<const VS_FIXEDFILEINFO*>(value);
    EXPECT_EQ(info->dwSignature, VS_FFI_SIGNATURE);
    EXPECT_EQ(
        (std::vector<int>{HIWORD(info->dwFileVersionMS), LOWORD(info->dwFileVersionMS), HIWORD(info->dwFileVersionLS)}),
        (std::vector<int>{OHM_PROJECT_VERSION_MAJOR, OHM_PROJECT_VERSION_MINOR, OHM_PROJECT_VERSION_PATCH}));
    EXPECT_FALSE(VerQueryValueW(block.data(), u"\\StringFileInfo\\040904b0\\FileVersion", &value, &length));
  }
}

TEST(VersionInfo, FilesWithoutABlock) {
  TempFolder temp;
  temp.makeFile("text.dll", "text\n");
  const std::pair<fs::path, LONG> cases[] = {
      {kLibraryDir / "nothing_here.dll", ERROR_FILE_NOT_FOUND},
      {temp.posix("text.dll"), ERROR_BAD_EXE_FORMAT},
      {OHM_LINKED_PLATFORM, ERROR_RESOURCE_TYPE_NOT_FOUND},  // loaded already: not loaded again
  };
  for (const auto& [file, error] : cases) {
    EXPECT_TRUE(FailsWith([&] { return GetFileVersionInfoSizeW(Windows(file).c_str(), nullptr); }, error)) << file;
  }
  std::vector<BYTE> small(sizeof(VersionBlock) - 1);
  EXPECT_FALSE(GetFileVersionInfoW(Windows(kLibraryDir / "libOhmUtilsRes.so").c_str(), 0,
                                   static_cast<DWORD>(small.size()), small.data()));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
  const VersionBlock notABlock{};
  LPVOID value = nullptr;
  UINT length = 0;
  EXPECT_FALSE(VerQueryValueW(&notABlock, u"\\", &value, &length));
}

}  // namespace
