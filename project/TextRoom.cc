#include "project/TextRoom.h"

#include <algorithm>
#include <utility>

namespace {

// Large enough that blocks are few, small enough that a plan with a few changes wastes little.
constexpr std::size_t kBlockUnits = 16 * 1024;

}  // namespace

TextRoom::TextRoom(TextRoom&& other) noexcept
    : mBlocks(std::move(other.mBlocks)),
      mFree(std::exchange(other.mFree, nullptr)),
      mLeft(std::exchange(other.mLeft, 0)) {
  other.mBlocks.clear();
}

TextRoom& TextRoom::operator=(TextRoom&& other) noexcept {
  if (this != &other) {
    mBlocks = std::move(other.mBlocks);
    other.mBlocks.clear();
    mFree = std::exchange(other.mFree, nullptr);
    mLeft = std::exchange(other.mLeft, 0);
  }
  return *this;
}

std::u16string_view TextRoom::keep(std::u16string_view text) {
  if (text.empty()) return {};
  if (text.size() > mLeft) {
    const std::size_t units = std::max(kBlockUnits, text.size());
    mBlocks.push_back(std::make_unique_for_overwrite<char16_t[]>(units));
    mFree = mBlocks.back().get();
    mLeft = units;
  }
  char16_t* const copy = mFree;
  std::copy(text.begin(), text.end(), copy);
  mFree += text.size();
  mLeft -= text.size();
  return {copy, text.size()};
}
