#include "zd/lisp/ZdLispFileLocks.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "win/fs/PathMapping.h"
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode.h"
#include "zd/lisp/ZdLisp.h"

namespace {

constexpr const char* kLockSuffix = ".ohmlock";
constexpr int kTakeAttempts = 8;

enum class Take { Taken, AlreadyHeld, Busy };

struct HeldLocks {
  std::mutex mutex;
  std::map<std::string, int> files;  // lock file (POSIX, canonical) -> descriptor holding its flock
};

HeldLocks& held() {
  static HeldLocks h;
  return h;
}

// The lock file of an existing drawing, from its canonical path; nullopt when
// the drawing isn't there.
std::optional<std::string> lockFileOf(const char16_t* drawing) {
  const std::optional<std::string> posix = drawing ? WindowsPathToPosix(drawing) : std::nullopt;
  if (!posix || posix->empty()) return std::nullopt;
  char canonical[PATH_MAX];
  struct stat info {};
  if (!::realpath(posix->c_str(), canonical) || ::stat(canonical, &info) != 0 || !S_ISREG(info.st_mode))
    return std::nullopt;
  return std::string(canonical) + kLockSuffix;
}

bool sameFile(int fd, const std::string& path) {
  struct stat opened {
  }, named{};
  return ::fstat(fd, &opened) == 0 && ::stat(path.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

void writeOwner(int fd) {
  const std::string pid = std::to_string(::getpid()) + "\n";
  if (::ftruncate(fd, 0) == 0) (void)!::write(fd, pid.data(), pid.size());
}

// Locks the file; a releaser may unlink it between our open and our flock,
// so the lock counts only when the name still leads to the file we locked.
Take takeLockFile(const std::string& lockFile) {
  for (int attempt = 0; attempt < kTakeAttempts; ++attempt) {
    const int fd = ::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0) return Take::Busy;
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
      ::close(fd);
      return Take::Busy;
    }
    if (sameFile(fd, lockFile)) {
      writeOwner(fd);
      held().files.emplace(lockFile, fd);
      return Take::Taken;
    }
    ::close(fd);
  }
  return Take::Busy;
}

Take take(const std::string& lockFile) {
  std::lock_guard lock(held().mutex);
  if (held().files.count(lockFile)) return Take::AlreadyHeld;
  return takeLockFile(lockFile);
}

bool release(const std::string& lockFile) {
  std::lock_guard lock(held().mutex);
  const auto it = held().files.find(lockFile);
  if (it == held().files.end()) return false;
  ::unlink(lockFile.c_str());  // while still locked, so nobody takes the old file
  ::close(it->second);
  held().files.erase(it);
  return true;
}

ZdDwgLockState probe(const std::string& lockFile) {
  {
    std::lock_guard lock(held().mutex);
    if (held().files.count(lockFile)) return ZdDwgLockState::HeldHere;
  }
  const int fd = ::open(lockFile.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return ZdDwgLockState::Free;
  const bool busy = ::flock(fd, LOCK_SH | LOCK_NB) != 0;
  ::close(fd);
  return busy ? ZdDwgLockState::HeldElsewhere : ZdDwgLockState::Stale;
}

bool available(ZdDwgLockState state) {
  return state == ZdDwgLockState::Free || state == ZdDwgLockState::Stale || state == ZdDwgLockState::HeldHere;
}

// --- value lists ------------------------------------------------------------

bool truthy(const ZdValueNode* node) {
  return node && (node->restype == RTT || (node->restype == RTSHORT && node->resval.rint != 0));
}

// The paths of a list argument (RTLB RTSTR... RTLE); `rest` becomes the node behind it.
std::optional<std::vector<std::u16string>> fileList(const ZdValueNode* args, const ZdValueNode*& rest) {
  if (!args || args->restype != RTLB) return std::nullopt;
  std::vector<std::u16string> files;
  for (const ZdValueNode* node = args->rbnext; node; node = node->rbnext) {
    if (node->restype == RTLE) {
      rest = node->rbnext;
      return files;
    }
    if (node->restype != RTSTR || !node->resval.rstring) return std::nullopt;
    files.emplace_back(node->resval.rstring);
  }
  return std::nullopt;
}

// A flat chain of RTSTR nodes, or one RTNIL node for none; RTNORM, or RTERROR when allocation fails.
int replyWith(const std::vector<std::u16string>& files, ZdValueNode** reply) {
  if (files.empty()) {
    *reply = zdutNewRb(RTNIL);
    return *reply ? RTNORM : RTERROR;
  }
  ZdValueNode** tail = reply;
  for (const std::u16string& file : files) {
    *tail = zdutNewRb(RTSTR);
    if (!*tail || !((*tail)->resval.rstring = zdutNewString(file.c_str()))) {
      zdutRelRb(*reply);
      *reply = nullptr;
      return RTERROR;
    }
    tail = &(*tail)->rbnext;
  }
  return RTNORM;
}

// --- the Lisp functions -------------------------------------------------------

struct LockRequest {
  std::vector<std::u16string> files;
  bool lock = false;
  bool allOrNone = false;
};

std::optional<LockRequest> lockRequestOf(const ZdValueNode* args) {
  const ZdValueNode* flags = nullptr;
  std::optional<std::vector<std::u16string>> files = fileList(args, flags);
  if (!files) return std::nullopt;
  return LockRequest{std::move(*files), truthy(flags), truthy(flags ? flags->rbnext : nullptr)};
}

bool canHave(const std::u16string& file, bool lock, std::vector<std::string>& takenNow) {
  const std::optional<std::string> lockFile = lockFileOf(file.c_str());
  if (!lockFile) return false;
  if (!lock) return available(probe(*lockFile));
  const Take result = take(*lockFile);
  if (result == Take::Taken) takenNow.push_back(*lockFile);
  return result != Take::Busy;
}

int checkAndLock(const ZdValueNode* args, ZdValueNode** reply) {
  const std::optional<LockRequest> request = lockRequestOf(args);
  if (!request) return RTERROR;
  std::vector<std::u16string> had;
  std::vector<std::string> takenNow;
  for (const std::u16string& file : request->files)
    if (canHave(file, request->lock, takenNow)) had.push_back(file);
  if (request->allOrNone && had.size() != request->files.size()) {
    for (const std::string& lockFile : takenNow) release(lockFile);
    had.clear();
  }
  return replyWith(had, reply);
}

int unlock(const ZdValueNode* args, ZdValueNode** reply) {
  const ZdValueNode* rest = nullptr;
  const std::optional<std::vector<std::u16string>> files = fileList(args, rest);
  if (!files) return RTERROR;
  std::vector<std::u16string> notHeld;
  for (const std::u16string& file : *files) {
    const std::optional<std::string> lockFile = lockFileOf(file.c_str());
    if (!lockFile || !release(*lockFile)) notHeld.push_back(file);
  }
  return replyWith(notHeld, reply);
}

const ZdLispRegistrar kCheckAndLock(u"wdupda_chkdwglockstatus_internal", checkAndLock);
const ZdLispRegistrar kUnlock(u"c:ohm_upd_unlock_dwgs", unlock);

}  // namespace

ZdDwgLockState zdDwgLockState(const char16_t* drawing) {
  const std::optional<std::string> lockFile = lockFileOf(drawing);
  return lockFile ? probe(*lockFile) : ZdDwgLockState::NoDrawing;
}

std::vector<int> zdHeldDwgLockDescriptors() {
  std::lock_guard lock(held().mutex);
  std::vector<int> descriptors;
  for (const auto& [file, fd] : held().files) descriptors.push_back(fd);
  return descriptors;
}
