// An index from tags to the numbers 0, 1, 2, ... that they are given in the
// order they are added, for the planner's coils: tens of thousands of them,
// looked up once for each contact.
//
// Open addressing over 2^k slots, at most half of them full: a slot holds a
// number plus one (0: empty) and 32 bits of its tag's hash, so that a probe
// compares tags only when those bits agree. The index holds views of the
// tags, not copies: the strings must outlive it and stay put.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

class TagIndex {
 public:
  // Room for `expected` tags; more may be added, at the cost of growing.
  explicit TagIndex(std::size_t expected = 0);

  // The number of `tag` and false when it is in already; else it is added,
  // with the next number, and true.
  std::pair<std::uint32_t, bool> add(std::u16string_view tag);

  std::optional<std::uint32_t> find(std::u16string_view tag) const;

  std::size_t size() const { return mTags.size(); }

 private:
  struct Slot {
    std::uint32_t numberPlusOne = 0;
    std::uint32_t hashBits = 0;
  };

  // The slot that holds `tag`, or the empty one where it would go.
  std::size_t slotOf(std::u16string_view tag, std::size_t hash) const;
  void grow();

  std::vector<Slot> mSlots;                // size a power of two, more than twice the tags
  std::vector<std::u16string_view> mTags;  // by number
};
