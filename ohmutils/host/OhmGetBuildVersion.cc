#include "ohmutils/host/OhmGetBuildVersion.h"

#include <vector>

#include "win/module/VersionInfo.h"
#include "zd/ZdString.h"
#include "zd/app/ZdHostApplicationServices.h"

namespace {

constexpr const WCHAR* kMainModule = u"ohmmain.dll";

// The file's fixed version information into `info`; false without it.
bool ReadFixedFileInfo(const ZdString& file, VS_FIXEDFILEINFO& info) {
  const DWORD size = GetFileVersionInfoSizeW(file, nullptr);
  if (size == 0) return false;
  std::vector<BYTE> block(size);
  if (!GetFileVersionInfoW(file, 0, size, block.data())) return false;
  LPVOID value = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(block.data(), u"\\", &value, &length) || length < sizeof(VS_FIXEDFILEINFO)) return false;
  info = *static_cast<const VS_FIXEDFILEINFO*>(value);
  return true;
}

}  // namespace

bool OhmGetBuildVersion(CString& version) {
  ZdString mainModule;
  if (zddbHostApplicationServices()->findFile(mainModule, kMainModule, nullptr, 0) != 0) return false;
  VS_FIXEDFILEINFO info{};
  if (!ReadFixedFileInfo(mainModule, info)) return false;
  version.Format(u"%d.%d.%d.%d", HIWORD(info.dwFileVersionMS), LOWORD(info.dwFileVersionMS),
                 HIWORD(info.dwFileVersionLS), LOWORD(info.dwFileVersionLS));
  return true;
}
