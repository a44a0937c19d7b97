// The coils' index by tag: numbers in the order of adding, exact matches
// only, and nothing lost when it grows past the room it was given.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "project/TagIndex.h"

namespace {

TEST(TagIndex, GivesNumbersInOrderAndFindsExactTagsOnly) {
  TagIndex index(4);
  const std::vector<std::u16string> tags = {u"K1", u"K10", u"", u"k1", u"K1 "};
  for (std::size_t i = 0; i < tags.size(); ++i) EXPECT_EQ(index.add(tags[i]), std::make_pair(std::uint32_t(i), true));
  EXPECT_EQ(index.add(u"K10"), std::make_pair(1u, false));  // a second coil with a known tag
  EXPECT_EQ(index.size(), tags.size());
  const std::pair<std::u16string, std::optional<std::uint32_t>> lookups[] = {
      {u"K1", 0}, {u"K10", 1}, {u"", 2}, {u"k1", 3}, {u"K1 ", 4}, {u"K", std::nullopt}, {u"K100", std::nullopt},
  };
  for (const auto& [tag, number] : lookups) EXPECT_EQ(index.find(tag), number) << tag.size();
}

TEST(TagIndex, KeepsEveryTagWhenGrowingFromAnyRoom) {
  for (const std::size_t room : {0u, 1u, 100u, 5000u}) {
    std::vector<std::u16string> tags;
    for (int i = 0; i < 3000; ++i) tags.push_back(u"K" + std::u16string(1, char16_t(u'A' + i % 26)) + char16_t(i));
    TagIndex index(room);
    for (const std::u16string& tag : tags) index.add(tag);
    ASSERT_EQ(index.size(), tags.size()) << room;
    for (std::size_t i = 0; i < tags.size(); ++i) EXPECT_EQ(index.find(tags[i]), std::uint32_t(i)) << room;
    EXPECT_FALSE(index.find(u"K")) << room;
  }
}

}  // namespace
