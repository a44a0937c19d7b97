// The host's visual styles: whether the application's windows are drawn with
// the themed look of the user interface it runs in. A session without a
// themed interface (a terminal, a test) is not themed.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

class CZdUiVisualStyles {
 public:
  // 1 when the application is themed, 0 when not.
  int IsAppThemed() const;
};

OHM_PLATFORM_API_END
