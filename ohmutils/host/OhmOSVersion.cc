#include "ohmutils/host/OhmOSVersion.h"

#include "win/module/NetWksta.h"
#include "zd/ui/CZdUiVisualStyles.h"

void OhmOSVersion::GetStaticVersionInfo() {
  if (mVersionKnown) return;
  mVersion = OSVersionInfo{};
  mVersion.dwOSVersionInfoSize = kVersionInfoSize;
  LPBYTE buffer = nullptr;
  if (NetWkstaGetInfo(nullptr, 100, &buffer) != NERR_Success || !buffer) return;
  const auto* workstation = reinterpret_cast<const WKSTA_INFO_100*>(buffer);
  mVersion.dwMajorVersion = workstation->wki100_ver_major;
  mVersion.dwMinorVersion = workstation->wki100_ver_minor;
  NetApiBufferFree(buffer);
  mVersionKnown = true;
}

void OhmOSVersion::GetOsVersion(unsigned int& major, unsigned int& minor) {
  GetStaticVersionInfo();
  major = mVersion.dwMajorVersion;
  minor = mVersion.dwMinorVersion;
}

bool OhmOSVersion::IsVistaOrLaterOS() {
  unsigned int major = 0;
  unsigned int minor = 0;
  GetOsVersion(major, minor);
  return major >= 6;
}

bool OhmOSVersion::IsThemed() {
  const CZdUiVisualStyles styles;
  return styles.IsAppThemed() == 1;
}
