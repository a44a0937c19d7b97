// What the host service tests share: the temporary folder, Windows-form
// paths, and child processes with pipes to their standard input and output
// (the other side of a lock contest, a host that loads the module from a
// folder of the test's making).
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/TempFolder.h"
#include "win/fs/PathMapping.h"

extern char** environ;

namespace host_test {

namespace fs = std::filesystem;

inline std::u16string Windows(const fs::path& path) { return PosixPathToWindows(path.string()); }

// A running child program with its standard input and output on pipes.
class Child {
 public:
  Child(const std::string& program, const std::vector<std::string>& args,
        const std::vector<std::string>& extraEnv = {}) {
    int toChild[2], fromChild[2];
    if (::pipe2(toChild, O_CLOEXEC) != 0 || ::pipe2(fromChild, O_CLOEXEC) != 0) return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, toChild[0], 0);
    posix_spawn_file_actions_adddup2(&actions, fromChild[1], 1);
    posix_spawn_file_actions_adddup2(&actions, fromChild[1], 2);
    std::vector<std::string> argStrings{program};
    argStrings.insert(argStrings.end(), args.begin(), args.end());
    std::vector<std::string> envStrings = extraEnv;
    for (char** e = environ; *e; ++e)
      if (!overridden(*e, extraEnv)) envStrings.emplace_back(*e);
    if (::posix_spawn(&mPid, program.c_str(), &actions, nullptr, pointers(argStrings).data(),
                      pointers(envStrings).data()) != 0)
      mPid = -1;
    posix_spawn_file_actions_destroy(&actions);
    ::close(toChild[0]);
    ::close(fromChild[1]);
    mIn = toChild[1];
    mOut = ::fdopen(fromChild[0], "r");
  }
  ~Child() {
    if (mIn >= 0) ::close(mIn);
    if (mOut) std::fclose(mOut);
    if (mPid > 0) wait();
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  bool started() const { return mPid > 0 && mOut; }
  void send(const std::string& line) {
    const std::string text = line + "\n";
    if (::write(mIn, text.data(), text.size()) < 0) std::perror("write to child");
  }
  // The next line without its newline; empty at the end.
  std::string readLine() {
    char buffer[4096];
    if (!mOut || !std::fgets(buffer, sizeof buffer, mOut)) return {};
    std::string line(buffer);
    if (!line.empty() && line.back() == '\n') line.pop_back();
    return line;
  }
  // Lines up to (not including) `end`, or to the end of the output.
  std::vector<std::string> readUntil(const std::string& end) {
    std::vector<std::string> lines;
    for (std::string line = readLine(); !line.empty() && line != end; line = readLine()) lines.push_back(line);
    return lines;
  }
  // Everything the child writes from here to its end.
  std::string readAll() {
    std::string text;
    char buffer[4096];
    for (std::size_t n; mOut && (n = std::fread(buffer, 1, sizeof buffer, mOut)) > 0;) text.append(buffer, n);
    return text;
  }
  // The exit code; -1 when the child didn't exit normally.
  int wait() {
    int status = 0;
    const pid_t pid = std::exchange(mPid, -1);
    if (pid <= 0 || ::waitpid(pid, &status, 0) != pid) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  static bool overridden(const std::string& entry, const std::vector<std::string>& extraEnv) {
    const std::string name = entry.substr(0, entry.find('=') + 1);
    for (const std::string& e : extraEnv)
      if (e.compare(0, name.size(), name) == 0) return true;
    return false;
  }
  static std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> result;
    for (std::string& s : strings) result.push_back(s.data());
    result.push_back(nullptr);
    return result;
  }

  pid_t mPid = -1;
  int mIn = -1;
  FILE* mOut = nullptr;
};

}  // namespace host_test
