// OhmOSVersion: the version of the operating system underneath, probed once
// through the workstation query and kept, and whether the application draws
// with a themed look. A value class; each object belongs to its user, and a
// copy carries the probe's result with it.
//
// Invariant: while mVersionKnown is false the record is zeroed (apart from
// its size field after a failed probe); once true, major and minor stay.
#pragma once

#include <cstdint>

#include "ohmutils/OhmUtilsExport.h"

class OHMUTILS_EXPORT OhmOSVersion {
 public:
  // The platform's OSVERSIONINFOW layout.
  struct OSVersionInfo {
    std::uint32_t dwOSVersionInfoSize;
    std::uint32_t dwMajorVersion;
    std::uint32_t dwMinorVersion;
    std::uint32_t dwBuildNumber;
    std::uint32_t dwPlatformId;
    char16_t szCSDVersion[128];
  };
  static constexpr std::uint32_t kVersionInfoSize = 276;

  // Nothing probed yet; the record is left as it is (only the flag counts).
  OhmOSVersion() : mVersionKnown(false) {}
  OhmOSVersion(const OhmOSVersion& other) = default;
  // Copies flag and record.
  OhmOSVersion& operator=(const OhmOSVersion& other) = default;
  ~OhmOSVersion() {}

  // Probes major and minor through the workstation query unless known; on
  // failure nothing is kept and the next call probes again.
  void GetStaticVersionInfo();
  // Probes if needed, then gives major and minor; 0 and 0 when the probe fails.
  void GetOsVersion(unsigned int& major, unsigned int& minor);
  // Major version 6 or later (minor not looked at); false when the probe fails.
  bool IsVistaOrLaterOS();
  bool IsVistaOrLater() { return IsVistaOrLaterOS(); }
  // The host's visual styles say the application is themed (exactly 1).
  bool IsThemed();
  // IsVistaOrLater and then IsThemed; the styles aren't asked before 6.
  bool IsVistaTheme() { return IsVistaOrLater() && IsThemed(); }

 private:
  bool mVersionKnown;
  OSVersionInfo mVersion;
};
