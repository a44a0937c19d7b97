#include "zd/ui/ZdWinMsgFilter.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "win/ui/Messages_internal.h"
#include "zd/ui/ZdWinMsgFilter_testing.h"

namespace {

struct Loop {
  std::vector<ZdFilterWinMsgFn> filters;
  std::map<HWND, std::vector<MSG>> delivered;
  bool failNextRegister = false;
};

Loop& loop() {
  static Loop state;
  return state;
}

bool swallowed(MSG& msg) {
  const std::vector<ZdFilterWinMsgFn> filters = loop().filters;  // a filter may take itself out
  return std::any_of(filters.begin(), filters.end(), [&](ZdFilterWinMsgFn filter) { return filter(&msg); });
}

}  // namespace

bool zdedRegisterFilterWinMsg(ZdFilterWinMsgFn filter) {
  if (std::exchange(loop().failNextRegister, false)) return false;
  auto& filters = loop().filters;
  if (!filter || std::find(filters.begin(), filters.end(), filter) != filters.end()) return false;
  filters.push_back(filter);
  return true;
}

bool zdedRemoveFilterWinMsg(ZdFilterWinMsgFn filter) {
  auto& filters = loop().filters;
  const auto it = std::find(filters.begin(), filters.end(), filter);
  if (it == filters.end()) return false;
  filters.erase(it);
  return true;
}

bool zdHostPumpMessages() {
  MSG msg{};
  while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    if (msg.message == WM_QUIT) return false;
    if (!swallowed(msg)) loop().delivered[msg.hwnd].push_back(msg);
  }
  return true;
}

namespace zd_testing {

std::vector<MSG> deliveredMessages(HWND window) {
  const auto it = loop().delivered.find(window);
  return it == loop().delivered.end() ? std::vector<MSG>() : it->second;
}

bool hasQueuedMessages() {
  MSG msg{};
  return PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE) != FALSE;
}

void resetMessages() {
  MSG msg{};
  while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
  }
  loop().delivered.clear();
}

void failNextRegisterFilter() noexcept { loop().failNextRegister = true; }

std::size_t registeredFilterCount() noexcept { return loop().filters.size(); }

}  // namespace zd_testing
