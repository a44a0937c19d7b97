// The host application's services that modules ask about the installation:
// where files are found, the user's roamable folder, the registry key under
// which the product keeps the user's settings.
//
// Strings that the services give are kept by the host and stay valid until
// the value changes. Thread safety: the host's main thread only.
#pragma once

#include "OhmPlatformExport.h"
#include "zd/ZdString.h"

OHM_PLATFORM_API_BEGIN

class ZdDbDatabase;

class ZdDbHostApplicationServices {
 public:
  // Searches for `fileName`: as given when it has a folder, else in each
  // folder of the host setting "ZEDA" (semicolon list, Windows form) in order.
  // A module's name stands for its file, as for LoadLibraryW: "X.dll" is
  // looked for as "libX.so".
  // 0 and the full Windows-form path in `found`; a non-zero status (and
  // `found` untouched) when it is nowhere. `database` and `hint` are accepted
  // as the host does and not used.
  int findFile(ZdString& found, const char16_t* fileName, ZdDbDatabase* database = nullptr, int hint = 0);

  // The user's roamable root folder in Windows form, ending without a
  // separator; kept by the host. 0 and the folder in `folder`, or a non-zero
  // status with `folder` untouched.
  int getRoamableRootFolder(const char16_t*& folder);

  // The product's root key under HKEY_CURRENT_USER: "Software\Ohm\Zeda\R1".
  const char16_t* getUserRegistryProductRootKey() const noexcept;
};

// The host's application services; never null.
ZdDbHostApplicationServices* zddbHostApplicationServices();

OHM_PLATFORM_API_END
