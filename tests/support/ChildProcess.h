// Other programs run by the tests: the ohm tool, the helpers that contend
// with a test for locks and settings, a host that loads the module. Run to
// their end with their output caught in files, started to be watched or
// killed, or kept talking through pipes to their standard input and output.
// A child inherits the test's environment, with `extraEnv` entries
// ("NAME=value") in place of those of the same name.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/TempFolder.h"

extern char** environ;

namespace child_process {

using Strings = std::vector<std::string>;

inline std::vector<char*> Pointers(Strings& strings) {
  std::vector<char*> result;
  for (std::string& s : strings) result.push_back(s.data());
  result.push_back(nullptr);
  return result;
}

inline Strings Environment(const Strings& extraEnv) {
  Strings entries = extraEnv;
  for (char** e = environ; *e; ++e) {
    const std::string entry = *e, name = entry.substr(0, entry.find('=') + 1);
    bool overridden = false;
    for (const std::string& extra : extraEnv) overridden = overridden || extra.compare(0, name.size(), name) == 0;
    if (!overridden) entries.push_back(entry);
  }
  return entries;
}

// Starts `program`; its pid, -1 when it couldn't start.
inline pid_t Start(const std::string& program, const Strings& args, const Strings& extraEnv,
                   posix_spawn_file_actions_t* actions) {
  Strings argStrings{program}, envStrings = Environment(extraEnv);
  argStrings.insert(argStrings.end(), args.begin(), args.end());
  pid_t pid = -1;
  if (::posix_spawn(&pid, program.c_str(), actions, nullptr, Pointers(argStrings).data(),
                    Pointers(envStrings).data()) != 0)
    pid = -1;
  posix_spawn_file_actions_destroy(actions);
  return pid;
}

}  // namespace child_process

// The bytes of a file; empty when it can't be read.
inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// Starts `program` with its standard output and error going to files "out"
// and "err" of `folder`; the child's pid, -1 when it couldn't start.
inline pid_t Spawn(const std::string& program, const TempFolder& folder, const std::vector<std::string>& args,
                   const std::vector<std::string>& extraEnv = {}) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, folder.posix("out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, folder.posix("err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  return child_process::Start(program, args, extraEnv, &actions);
}

// The exit code of a child; -1 when it didn't exit normally.
inline int Wait(pid_t child) {
  int status = 0;
  if (child <= 0 || ::waitpid(child, &status, 0) != child) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

struct RunResult {
  int status = -1;
  std::string out, err;
};

// Runs `program` to its end.
inline RunResult RunProgram(const std::string& program, const std::vector<std::string>& args) {
  TempFolder folder;
  // A braced list is evaluated in order: the files are read after the wait.
  return {Wait(Spawn(program, folder, args)), ReadFile(folder.posix("out")), ReadFile(folder.posix("err"))};
}

// A running child with its standard input and output (and error) on pipes.
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
    mPid = child_process::Start(program, args, extraEnv, &actions);
    ::close(toChild[0]);
    ::close(fromChild[1]);
    mIn = toChild[1];
    mOut = ::fdopen(fromChild[0], "r");
  }
  ~Child() {
    if (mIn >= 0) ::close(mIn);
    if (mOut) std::fclose(mOut);
    wait();
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  bool started() const { return mPid > 0 && mOut; }
  void send(const std::string& line) {
    if (::write(mIn, (line + "\n").data(), line.size() + 1) < 0) std::perror("write to child");
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
  // The exit code; -1 when the child didn't exit normally or was waited for already.
  int wait() { return Wait(std::exchange(mPid, -1)); }

 private:
  pid_t mPid = -1;
  int mIn = -1;
  FILE* mOut = nullptr;
};

// Waits until file `path` holds `text`, at most about five seconds; whether it came.
inline bool WaitForText(const std::string& path, const std::string& text) {
  for (int i = 0; i < 500; ++i) {
    if (ReadFile(path).find(text) != std::string::npos) return true;
    ::usleep(10000);
  }
  return false;
}

// The number of a process that has ended.
inline pid_t DeadProcess() {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ::waitpid(child, nullptr, 0);
  return child;
}
