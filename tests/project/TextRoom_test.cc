// The room of a plan's new values: every view it gave stays good and
// unchanged while texts fill block after block, when a text is larger than
// a block, and when the room is moved; a moved-from room starts afresh.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "project/TextRoom.h"

namespace {

TEST(TextRoom, ViewsHoldAcrossBlocksAndMoves) {
  std::vector<std::pair<std::u16string, std::u16string_view>> kept;
  TextRoom room;
  auto keep = [&](TextRoom& into, std::u16string text) { kept.emplace_back(text, into.keep(text)); };
  for (int i = 0; i < 5000; ++i) keep(room, u" S" + std::u16string(static_cast<std::size_t>(i % 7), u'0' + i % 10));
  keep(room, std::u16string(40000, u'x'));  // more than a block
  keep(room, u"after the large one");
  TextRoom moved(std::move(room));
  keep(moved, u"in the moved room");
  keep(room, u"in the emptied room");
  TextRoom assigned;
  assigned = std::move(moved);
  keep(assigned, u"in the assigned room");
  EXPECT_TRUE(room.keep(u"").empty());
  for (const auto& [text, view] : kept) ASSERT_EQ(view, text);
}

}  // namespace
