#include "win/fs/PathFunctions.h"

#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "win/fs/PathMapping.h"

namespace {

using std::u16string;
using std::u16string_view;
constexpr auto npos = u16string_view::npos;
constexpr u16string_view kEllipsis = u"...";

bool isSeparator(char16_t unit) { return unit == u'\\' || unit == u'/'; }
bool hasDrive(u16string_view path) { return path.size() >= 2 && path[1] == u':'; }

// Units of the root that PathRemoveFileSpecW and PathCombineW keep:
// "X:\\", "X:", "\\\\" (a UNC start), "\\" or nothing.
std::size_t rootLength(u16string_view path) {
  if (hasDrive(path)) return path.size() > 2 && path[2] == u'\\' ? 3 : 2;
  if (path.size() >= 2 && path[0] == u'\\' && path[1] == u'\\') return 2;
  return !path.empty() && path[0] == u'\\' ? 1 : 0;
}

// Drops "." components and lets ".." take back the one before it; the root
// and a trailing backslash stay.
u16string canonical(u16string_view path) {
  const std::size_t root = rootLength(path);
  std::vector<u16string_view> kept;
  u16string_view rest = path.substr(root);
  while (true) {
    const std::size_t cut = rest.find(u'\\');
    const u16string_view part = rest.substr(0, cut);
    if (part == u"..") {
      if (!kept.empty()) kept.pop_back();
    } else if (part != u".") {
      kept.push_back(part);
    }
    if (cut == npos) break;
    rest.remove_prefix(cut + 1);
  }
  u16string result(path.substr(0, root));
  for (std::size_t i = 0; i < kept.size(); ++i) result.append(i ? u"\\" : u"").append(kept[i]);
  return result;
}

u16string joined(u16string_view folder, u16string_view file) {
  if (hasDrive(file)) return u16string(file);
  if (!file.empty() && file[0] == u'\\') return u16string(folder.substr(0, hasDrive(folder) ? 2 : 0)) + u16string(file);
  if (folder.empty()) return u16string(file);
  if (file.empty()) return u16string(folder);
  return u16string(folder) + (folder.back() == u'\\' ? u"" : u"\\") + u16string(file);
}

// `name` cut to `room` units with the ellipsis at its end.
u16string cutWithEllipsis(u16string_view name, std::size_t room) {
  if (room <= kEllipsis.size()) return u16string(kEllipsis.substr(0, room));
  return u16string(name.substr(0, room - kEllipsis.size())) + u16string(kEllipsis);
}

// The compacted form of a path that doesn't fit `room` units.
u16string compacted(u16string_view source, std::size_t room) {
  const std::size_t separator = source.find_last_of(u"\\/");
  const u16string_view name = separator == npos ? source : source.substr(separator + 1);
  if (separator == npos || name.size() + kEllipsis.size() + 1 > room) return cutWithEllipsis(name, room);
  const std::size_t headRoom = room - kEllipsis.size() - 1 - name.size();
  const u16string_view head = source.substr(0, std::min(headRoom, separator));
  const std::size_t headEnd = head.find_last_of(u"\\/");
  const u16string_view kept = headEnd == npos ? u16string_view() : head.substr(0, headEnd + 1);
  return u16string(kept) + u16string(kEllipsis) + source[separator] + u16string(name);
}

void copyOut(const u16string& text, LPWSTR dest) {
  text.copy(dest, text.size());
  dest[text.size()] = u'\0';
}

}  // namespace

void PathStripPathW(LPWSTR path) {
  if (!path) return;
  const u16string_view text(path);
  const std::size_t searchEnd = !text.empty() && isSeparator(text.back()) ? text.size() - 1 : text.size();
  const std::size_t cut = text.substr(0, searchEnd).find_last_of(u"\\/:");
  if (cut == npos || cut + 1 == searchEnd) return;
  const u16string last(text.substr(cut + 1));
  copyOut(last, path);
}

BOOL PathRemoveFileSpecW(LPWSTR path) {
  if (!path) return FALSE;
  const u16string_view text(path);
  const std::size_t root = rootLength(text);
  const std::size_t last = text.rfind(u'\\');
  const std::size_t cut = (last == npos || last < root) ? root : last;
  if (cut >= text.size()) return FALSE;
  path[cut] = u'\0';
  return TRUE;
}

LPWSTR PathCombineW(LPWSTR dest, LPCWSTR folder, LPCWSTR file) {
  if (!dest) return nullptr;
  const u16string result = canonical(joined(folder ? folder : u"", file ? file : u""));
  if ((!folder && !file) || result.size() >= MAX_PATH) {
    dest[0] = u'\0';
    return nullptr;
  }
  copyOut(result, dest);
  return dest;
}

BOOL PathAppendW(LPWSTR path, LPCWSTR more) {
  if (!path || !more) return FALSE;
  while (*more == u'\\') ++more;
  WCHAR joinedPath[MAX_PATH];
  if (!PathCombineW(joinedPath, path, more)) return FALSE;
  copyOut(joinedPath, path);
  return TRUE;
}

BOOL PathFileExistsW(LPCWSTR path) {
  if (!path) return FALSE;
  const std::optional<std::string> posix = WindowsPathToPosix(path);
  struct stat info {};
  return posix && !posix->empty() && ::stat(posix->c_str(), &info) == 0 ? TRUE : FALSE;
}

BOOL PathCompactPathExW(LPWSTR out, LPCWSTR source, UINT maxUnits, DWORD flags) {
  if (!out || !source || flags != 0 || maxUnits == 0) return FALSE;
  const u16string_view text(source);
  copyOut(text.size() < maxUnits ? u16string(text) : compacted(text, maxUnits - 1), out);
  return TRUE;
}
