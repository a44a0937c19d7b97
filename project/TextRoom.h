// Room for texts that are handed out as views: the new values of a plan's
// changes, a hundred thousand and more in a large project, which would
// otherwise cost one allocation each to make and one to free.
//
// Texts are copied into blocks that never move and are freed only with the
// room, so a view that keep() returns holds as long as the room lives, also
// when the room is moved (its blocks go with it). A moved-from room is empty
// and may be used again.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

class TextRoom {
 public:
  TextRoom() = default;
  TextRoom(TextRoom&& other) noexcept;
  TextRoom& operator=(TextRoom&& other) noexcept;
  TextRoom(const TextRoom&) = delete;
  TextRoom& operator=(const TextRoom&) = delete;

  // A copy of `text` that lives as long as the room.
  std::u16string_view keep(std::u16string_view text);

 private:
  std::vector<std::unique_ptr<char16_t[]>> mBlocks;
  char16_t* mFree = nullptr;  // the unused end of the last block
  std::size_t mLeft = 0;      // units there
};
