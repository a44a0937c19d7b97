// Status of host database operations: 0 is success, every failure its own value.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace Zeda {

enum ErrorStatus : int {
  eOk = 0,
  eNotImplementedYet = 1,
  eNullObjectId = 3,
  eInvalidInput = 5,
  eKeyNotFound = 7,
  eWrongObjectType = 21,
  eFileNotFound = 56,
  eFileAccessErr = 59,
  eBadDxfFile = 70,
  eOutOfMemory = 80,
  eWasErased = 84,
  eWasOpenForRead = 85,
  eWasOpenForWrite = 86,
  eNotOpenForRead = 88,
  eNotOpenForWrite = 89,
  eUnknownHandle = 97,
  eNullObjectPointer = 101,
  eIteratorDone = 105,
  eDrawingNotOpen = 364,  // the drawing is not open in the host
};

}  // namespace Zeda

namespace ZdDb {

enum OpenMode : int { kForRead = 0, kForWrite = 1, kForNotify = 2 };

}  // namespace ZdDb

OHM_PLATFORM_API_END
