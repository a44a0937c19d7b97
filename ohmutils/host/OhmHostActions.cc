#include "ohmutils/host/OhmHostActions.h"

#include <cstdio>

#include "ohmutils/host/OhmUtilsModule_internal.h"
#include "win/fs/CrtFile.h"
#include "win/fs/FileFunctions.h"
#include "win/fs/PathFunctions.h"
#include "win/module/Module.h"
#include "win/module/Resource.h"
#include "win/ui/ShellExecute.h"
#include "zd/ui/ZdAutomation.h"

namespace {

constexpr const char16_t* kCannedDatabaseFile = u"~ohm_ohm_test_~.mdb";
constexpr WORD kCannedDatabaseId = 234;
constexpr DWORD kTempPathUnits = MAX_PATH;

// The canned database's file in the temporary folder into `buffer`; false
// when the folder can't be had or the path doesn't fit.
bool CannedDatabasePath(WCHAR (&buffer)[kTempPathUnits]) {
  const DWORD units = GetTempPathW(kTempPathUnits, buffer);
  if (units == 0 || units > kTempPathUnits) return false;
  return PathAppendW(buffer, kCannedDatabaseFile) != FALSE;
}

// Writes `size` bytes (none when size is 0) to `path`, replacing the file.
void WriteWholeFile(LPCWSTR path, const void* data, DWORD size) {
  FILE* file = _wfsopen(path, u"wb", _SH_DENYNO);
  if (!file) return;
  if (data && size) std::fwrite(data, 1, size, file);
  std::fclose(file);
}

}  // namespace

void OpenURL(CString address) {
  CString parameters;
  parameters.Format(u"url.dll,FileProtocolHandler %s", static_cast<LPCWSTR>(address));
  ShellExecuteW(nullptr, u"open", u"rundll32.exe", parameters, nullptr, SW_SHOWNORMAL);
}

void QuitZeda() {
  IDispatch* dispatch = zdedGetZedaWinApp()->GetIDispatch(TRUE);
  if (!dispatch) return;
  IZedaApplication* application = nullptr;
  const HRESULT status = dispatch->QueryInterface(IZedaApplication::iid, reinterpret_cast<void**>(&application));
  dispatch->Release();
  if (FAILED(status) || !application) return;
  application->Quit();
  application->Release();
}

bool dumpCannedDatabase(CString& path) {
  WCHAR buffer[kTempPathUnits] = u"";
  if (!CannedDatabasePath(buffer)) return false;
  DeleteFileW(buffer);
  path = buffer;
  HMODULE library = LoadLibraryW(ohm_internal::kCannedDatabaseResourceLibrary);
  if (!library) return true;
  const HRSRC resource = FindResourceW(library, MAKEINTRESOURCEW(kCannedDatabaseId), RT_RCDATA);
  const DWORD size = SizeofResource(library, resource);
  WriteWholeFile(buffer, LockResource(LoadResource(library, resource)), size);
  FreeLibrary(library);
  return size != 0;
}
