#include "win/LastError.h"

namespace {

thread_local DWORD tLastError = 0;

}  // namespace

DWORD GetLastError() noexcept { return tLastError; }
void SetLastError(DWORD code) noexcept { tLastError = code; }
