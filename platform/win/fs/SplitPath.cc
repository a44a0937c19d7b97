#include "win/fs/SplitPath.h"

#include <cerrno>
#include <string_view>

namespace {

struct Part {
  char16_t* buffer;
  std::size_t size;
  std::u16string_view text;
};

void emptyAll(Part* parts, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    if (parts[i].buffer && parts[i].size > 0) parts[i].buffer[0] = u'\0';
}

}  // namespace

errno_t _wsplitpath_s(const char16_t* path, char16_t* drive, std::size_t driveSize, char16_t* dir, std::size_t dirSize,
                      char16_t* fname, std::size_t fnameSize, char16_t* ext, std::size_t extSize) {
  Part parts[] = {{drive, driveSize, {}}, {dir, dirSize, {}}, {fname, fnameSize, {}}, {ext, extSize, {}}};
  const bool agree = !(drive && driveSize == 0) && !(!drive && driveSize != 0) && !(dir && dirSize == 0) &&
                     !(!dir && dirSize != 0) && !(fname && fnameSize == 0) && !(!fname && fnameSize != 0) &&
                     !(ext && extSize == 0) && !(!ext && extSize != 0);
  if (!path || !agree) {
    emptyAll(parts, 4);
    return EINVAL;
  }
  std::u16string_view rest(path);
  if (rest.size() >= 2 && rest[1] == u':') {
    parts[0].text = rest.substr(0, 2);
    rest.remove_prefix(2);
  }
  const std::size_t slash = rest.find_last_of(u"\\/");
  const std::size_t nameStart = slash == std::u16string_view::npos ? 0 : slash + 1;
  parts[1].text = rest.substr(0, nameStart);
  const std::u16string_view last = rest.substr(nameStart);
  const std::size_t dot = last.rfind(u'.');
  parts[2].text = last.substr(0, dot);
  parts[3].text = dot == std::u16string_view::npos ? std::u16string_view() : last.substr(dot);
  for (const Part& part : parts) {
    if (part.buffer && part.text.size() + 1 > part.size) {
      emptyAll(parts, 4);
      return ERANGE;
    }
  }
  for (const Part& part : parts) {
    if (!part.buffer) continue;
    part.text.copy(part.buffer, part.text.size());
    part.buffer[part.text.size()] = u'\0';
  }
  return 0;
}
