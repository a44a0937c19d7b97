// The terminal session's task dialogs and shell opening: what UiSink does
// unless a sink of its own says otherwise.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "win/Utf8.h"
#include "win/WinError.h"
#include "win/ui/ShellExecute.h"
#include "win/ui/UiSink.h"

extern char** environ;

namespace {

// Hands the address to xdg-open in the background, so that nothing waits
// for the browser; the shell in between ends at once. 2 when there is no xdg-open.
constexpr const char* kOpenerScript =
    "command -v xdg-open >/dev/null 2>&1 || exit 2; xdg-open \"$1\" >/dev/null 2>&1 &";

int runOpener(const std::string& target) {
  char sh[] = "/bin/sh", dashC[] = "-c", name[] = "ohm-open";
  std::string script = kOpenerScript, argument = target;
  char* argv[] = {sh, dashC, script.data(), name, argument.data(), nullptr};
  pid_t pid = -1;
  if (posix_spawn(&pid, sh, nullptr, nullptr, argv, environ) != 0) return -1;
  int status = 0;
  if (waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

void print(const std::u16string& text) { std::fprintf(stderr, "%s\n", Utf16ToUtf8(text).c_str()); }

void show(const UiTaskDialog& dialog) {
  print(u"[" + dialog.title + u"] " + dialog.mainInstruction);
  if (!dialog.content.empty()) print(dialog.content);
  if (!dialog.footer.empty()) print(dialog.footer);
  for (std::size_t i = 0; i < dialog.links.size(); ++i)
    print(u"  (l" + Utf8ToUtf16(std::to_string(i + 1)) + u") " + dialog.links[i].label + u": " +
          dialog.links[i].target);
  std::u16string buttons = u" ";
  for (std::size_t i = 0; i < dialog.buttons.size(); ++i)
    buttons += u" (" + Utf8ToUtf16(std::to_string(i + 1)) + u") " + dialog.buttons[i].caption +
               (dialog.buttons[i].id == dialog.defaultButton ? u" [default]" : u"");
  print(buttons);
}

// The action an answer line names; kClose for anything else.
UiTaskDialogAction parseAnswer(const UiTaskDialog& dialog, const std::string& line) {
  const UiTaskDialogAction close{UiTaskDialogAction::kClose, 0, u""};
  if (line.empty()) return {UiTaskDialogAction::kClickButton, dialog.defaultButton, u""};
  const bool link = line[0] == 'l';
  const long number = std::strtol(line.c_str() + (link ? 1 : 0), nullptr, 10);
  if (link && number >= 1 && static_cast<std::size_t>(number) <= dialog.links.size())
    return {UiTaskDialogAction::kClickLink, 0, dialog.links[number - 1].target};
  if (!link && number >= 1 && static_cast<std::size_t>(number) <= dialog.buttons.size())
    return {UiTaskDialogAction::kClickButton, dialog.buttons[number - 1].id, u""};
  return close;
}

// One answer line from standard input; false at its end.
bool readAnswer(std::string& line) {
  std::fprintf(stderr, "choice> ");
  char buffer[256];
  if (!std::fgets(buffer, sizeof buffer, stdin)) return false;
  line = buffer;
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  return true;
}

}  // namespace

UiTaskDialogAction UiSink::taskDialogAction(const UiTaskDialog& dialog, int step) {
  if (step == 0) show(dialog);
  std::string line;
  if (!::isatty(STDIN_FILENO) || !readAnswer(line)) return UiTaskDialogAction{UiTaskDialogAction::kClose, 0, u""};
  return parseAnswer(dialog, line);
}

INT_PTR UiSink::shellExecute(const UiShellExecute& request) {
  if (request.target.empty()) return SE_ERR_NOASSOC;
  const int status = runOpener(Utf16ToUtf8(request.target));
  return status == 0 ? 42 : ERROR_FILE_NOT_FOUND;
}
