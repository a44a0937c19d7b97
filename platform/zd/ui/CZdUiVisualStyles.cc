#include "zd/ui/CZdUiVisualStyles.h"

#include <atomic>

#include "zd/ui/CZdUiVisualStyles_testing.h"

namespace {

std::atomic<int> gThemed{0};
std::atomic<long> gQueries{0};

}  // namespace

int CZdUiVisualStyles::IsAppThemed() const {
  ++gQueries;
  return gThemed.load();
}

namespace zd_testing {

void setAppThemed(int themed) noexcept { gThemed = themed; }
long appThemedQueries() noexcept { return gQueries.load(); }

}  // namespace zd_testing
