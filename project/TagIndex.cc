#include "project/TagIndex.h"

#include <functional>

namespace {

std::size_t SlotCountFor(std::size_t tags) {
  std::size_t slots = 16;
  while (slots < 2 * tags + 1) slots *= 2;
  return slots;
}

std::size_t HashOf(std::u16string_view tag) { return std::hash<std::u16string_view>()(tag); }

// The bits kept in a slot: the hash's high half, which the slot's place (its low bits) says nothing of.
std::uint32_t KeptBits(std::size_t hash) { return static_cast<std::uint32_t>(static_cast<std::uint64_t>(hash) >> 32); }

}  // namespace

TagIndex::TagIndex(std::size_t expected) : mSlots(SlotCountFor(expected)) { mTags.reserve(expected); }

std::size_t TagIndex::slotOf(std::u16string_view tag, std::size_t hash) const {
  const std::size_t mask = mSlots.size() - 1;
  const std::uint32_t bits = KeptBits(hash);
  for (std::size_t i = hash & mask;; i = (i + 1) & mask) {  // ends: there is always an empty slot
    const Slot& slot = mSlots[i];
    if (slot.numberPlusOne == 0) return i;
    if (slot.hashBits == bits && mTags[slot.numberPlusOne - 1] == tag) return i;
  }
}

std::pair<std::uint32_t, bool> TagIndex::add(std::u16string_view tag) {
  if (2 * (mTags.size() + 1) >= mSlots.size()) grow();
  const std::size_t hash = HashOf(tag);
  Slot& slot = mSlots[slotOf(tag, hash)];
  if (slot.numberPlusOne != 0) return {slot.numberPlusOne - 1, false};
  mTags.push_back(tag);
  slot = {static_cast<std::uint32_t>(mTags.size()), KeptBits(hash)};
  return {slot.numberPlusOne - 1, true};
}

std::optional<std::uint32_t> TagIndex::find(std::u16string_view tag) const {
  const Slot& slot = mSlots[slotOf(tag, HashOf(tag))];
  if (slot.numberPlusOne == 0) return std::nullopt;
  return slot.numberPlusOne - 1;
}

void TagIndex::grow() {
  std::vector<Slot>(2 * mSlots.size()).swap(mSlots);
  for (std::size_t number = 0; number < mTags.size(); ++number) {
    const std::size_t hash = HashOf(mTags[number]);
    mSlots[slotOf(mTags[number], hash)] = {static_cast<std::uint32_t>(number + 1), KeptBits(hash)};
  }
}
