#include "ohmutils/host/OhmResDll.h"

#include "ohmutils/util/OhmUtilsPaths.h"
#include "win/LastError.h"
#include "win/module/FormatMessage.h"
#include "win/module/Module.h"
#include "win/ui/MessageBox.h"

namespace {

constexpr DWORD kModulePathUnits = 5000;
constexpr DWORD kSystemTextFlags =
    FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;

// Shows why `resourceLibrary` couldn't be loaded: the last error's system text.
void ShowLoadError(LPCWSTR resourceLibrary) {
  const DWORD error = GetLastError();
  LPWSTR systemText = nullptr;
  FormatMessageW(kSystemTextFlags, nullptr, error, LANG_NEUTRAL_SUBLANG_DEFAULT, reinterpret_cast<LPWSTR>(&systemText),
                 0, nullptr);
  CString message;
  message.Format(u"Error loading %s.\n%s", resourceLibrary, systemText ? systemText : u"");
  MessageBoxW(nullptr, message, u"Load Error", MB_OK | MB_ICONSTOP);
  LocalFree(systemText);
}

}  // namespace

HINSTANCE LoadResDll(LPCWSTR moduleFileName, LPCWSTR resourceLibrary) {
  CString besideModule;
  GenerateProgramDir(besideModule, moduleFileName);
  EnsureEndingBackslash(besideModule);
  besideModule += resourceLibrary;
  if (HINSTANCE library = LoadLibraryW(besideModule)) return library;
  if (HINSTANCE library = LoadLibraryW(resourceLibrary)) return library;
  ShowLoadError(resourceLibrary);
  return nullptr;
}

void UnloadResDll(HINSTANCE resourceLibrary) {
  if (resourceLibrary) FreeLibrary(resourceLibrary);
}

void GenerateProgramDir(CString& folder, LPCWSTR moduleFileName) {
  WCHAR path[kModulePathUnits];
  path[0] = u'\0';
  GetModuleFileNameW(GetModuleHandleW(moduleFileName), path, kModulePathUnits - 1);
  const CString modulePath(path);
  const int lastBackslash = modulePath.ReverseFind(u'\\');
  folder = lastBackslash >= 0 ? modulePath.Left(lastBackslash) : CString();
}
