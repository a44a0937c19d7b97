// The ohm tool run as a child process, for tests that watch it while it
// runs: its standard output and error go to files of a folder.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/TempFolder.h"

extern char** environ;

inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// ohm with `args`, its standard output and error into files of `folder`; the child's pid.
inline pid_t Spawn(const TempFolder& folder, const std::vector<std::string>& args) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, folder.posix("out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, folder.posix("err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  std::vector<char*> argv{const_cast<char*>(OHM_TOOL)};
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);
  pid_t child = -1;
  posix_spawn(&child, OHM_TOOL, &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return child;
}

inline int Wait(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
