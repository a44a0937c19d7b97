#include "win/fs/FileReplace.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <system_error>

namespace {

namespace fs = std::filesystem;

std::atomic<unsigned> gCounter{0};

// A new file beside `path` named NAME.~PID.N, opened for writing; -1 on failure.
int CreateBeside(const std::string& path, std::string& name) {
  for (int attempt = 0; attempt < 100; ++attempt) {
    name = path + ".~" + std::to_string(::getpid()) + "." + std::to_string(gCounter++);
    const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd >= 0 || errno != EEXIST) return fd;
  }
  return -1;
}

bool WriteAll(int fd, std::string_view bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t written = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    done += static_cast<std::size_t>(written);
  }
  return true;
}

// The process id of a file NAME.~PID.N beside `path`; 0 when it isn't one.
pid_t OwnerOf(const std::string& entry, const std::string& base) {
  const std::string prefix = base + ".~";
  if (entry.compare(0, prefix.size(), prefix) != 0) return 0;
  const std::string_view rest = std::string_view(entry).substr(prefix.size());
  pid_t pid = 0;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), pid);
  if (error != std::errc() || pid <= 0 || end == rest.data() + rest.size() || *end != '.') return 0;
  const std::string_view counter(end + 1, static_cast<std::size_t>(rest.data() + rest.size() - end - 1));
  if (counter.empty() || counter.find_first_not_of("0123456789") != std::string_view::npos) return 0;
  return pid;
}

// Removes what replacements of `path` by processes that are gone left beside it.
void RemoveStaleCopies(const std::string& path) {
  const fs::path file(path);
  const std::string base = file.filename().string();
  std::error_code error;
  for (fs::directory_iterator it(file.parent_path().empty() ? fs::path(".") : file.parent_path(), error), end;
       !error && it != end; it.increment(error)) {
    const pid_t owner = OwnerOf(it->path().filename().string(), base);
    if (owner != 0 && owner != ::getpid() && ::kill(owner, 0) != 0 && errno == ESRCH) {
      std::error_code ignored;
      fs::remove(it->path(), ignored);
    }
  }
}

// Flushes the folder's entry of the renamed file, so that a crash after the
// rename can't bring the old file back; a folder that can't be opened is left.
void SyncFolderOf(const std::string& path) {
  const fs::path folder = fs::path(path).parent_path();
  const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  ::fsync(fd);
  ::close(fd);
}

}  // namespace

int ReplaceFileContents(const std::string& path, std::string_view bytes) {
  RemoveStaleCopies(path);
  std::string temporary;
  const int fd = CreateBeside(path, temporary);
  if (fd < 0) return errno;
  struct stat old {};
  bool ok = WriteAll(fd, bytes);
  if (ok && ::stat(path.c_str(), &old) == 0) ok = ::fchmod(fd, old.st_mode & 07777) == 0;
  ok = ok && ::fsync(fd) == 0;
  int error = ok ? 0 : errno;
  if (::close(fd) != 0 && ok) error = errno;
  if (error == 0 && ::rename(temporary.c_str(), path.c_str()) != 0) error = errno;
  if (error != 0) {
    ::unlink(temporary.c_str());
    return error;
  }
  SyncFolderOf(path);
  return 0;
}
