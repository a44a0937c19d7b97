// CStringList: MFC's list of CString, a CList that takes both CString and
// wide text where an element is expected. Everything of CList.h applies.
#pragma once

#include "OhmPlatformExport.h"
#include "mfc/CList.h"
#include "mfc/CString.h"

OHM_PLATFORM_API_BEGIN

class CStringList : public CList<CString, const CString&> {
 public:
  explicit CStringList(INT_PTR blockSize = 10) : CList(blockSize) {}
};

OHM_PLATFORM_API_END
