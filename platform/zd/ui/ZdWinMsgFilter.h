// The host's message filters and its main loop. A module registers a filter
// to see each window message before the host handles it; a filter that
// returns true swallows the message, and neither later filters nor the
// message's window see it. Filters are asked in the order they were
// registered. The host's main loop takes the posted messages (win/ui/Messages.h)
// one by one, shows each to the filters and hands the rest to their windows.
//
// Thread safety: the host's main thread only.
#pragma once

#include "OhmPlatformExport.h"
#include "win/ui/Messages.h"

OHM_PLATFORM_API_BEGIN

// A message filter: true swallows the message.
using ZdFilterWinMsgFn = bool (*)(MSG* msg);

// Puts `filter` in place; false when it is null, already in place, or the
// host refuses it.
bool zdedRegisterFilterWinMsg(ZdFilterWinMsgFn filter);

// Takes `filter` out; false when it isn't in place.
bool zdedRemoveFilterWinMsg(ZdFilterWinMsgFn filter);

// Host side: runs the main loop until no message is left. Each message goes
// through the filters; one that none swallows reaches its window (where the
// host handles it). False when the loop took WM_QUIT: the host is to end, and
// messages after it stay queued.
bool zdHostPumpMessages();

OHM_PLATFORM_API_END
