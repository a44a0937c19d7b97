// How a subcommand of ohm ends when it can't do its work: a CommandError
// carries the message for standard error and the exit status. Statuses
// follow the shell's conventions: 0 success, 1 an operation that failed,
// 2 bad usage or bad input (a file that can't be read or isn't what the
// subcommand expects).
#pragma once

#include <stdexcept>
#include <string>

enum ExitStatus : int {
  kExitSuccess = 0,
  kExitFailed = 1,
  kExitBadInput = 2,
};

class CommandError : public std::runtime_error {
 public:
  CommandError(ExitStatus status, const std::string& message) : std::runtime_error(message), mStatus(status) {}
  ExitStatus status() const noexcept { return mStatus; }

 private:
  ExitStatus mStatus;
};

// A bad input: exit status 2 with `message`.
[[noreturn]] void FailBadInput(const std::string& message);
// A failed operation: exit status 1 with `message`.
[[noreturn]] void FailOperation(const std::string& message);
