#include "win/ui/ShellExecute.h"

#include <string>
#include <string_view>

#include "win/CrtChar.h"
#include "win/Utf8.h"
#include "win/fs/PathFunctions.h"
#include "win/fs/PathMapping.h"
#include "win/ui/UiSink.h"

namespace {

constexpr std::u16string_view kRunDll = u"rundll32.exe";
constexpr std::u16string_view kFileProtocolHandler = u"url.dll,FileProtocolHandler";

std::u16string text(LPCWSTR value) { return value ? std::u16string(value) : std::u16string(); }

bool namesRunDll(std::u16string_view file) {
  const std::size_t slash = file.find_last_of(u"\\/");
  return CrtEqualNoCase(file.substr(slash == std::u16string_view::npos ? 0 : slash + 1), kRunDll);
}

// The address of "url.dll,FileProtocolHandler <address>"; empty for other parameters.
std::u16string protocolHandlerAddress(std::u16string_view parameters) {
  if (parameters.size() <= kFileProtocolHandler.size() ||
      !CrtEqualNoCase(parameters.substr(0, kFileProtocolHandler.size()), kFileProtocolHandler) ||
      parameters[kFileProtocolHandler.size()] != u' ')
    return {};
  return std::u16string(parameters.substr(kFileProtocolHandler.size() + 1));
}

std::u16string targetOf(const UiShellExecute& request) {
  if (namesRunDll(request.file)) return protocolHandlerAddress(request.parameters);
  const bool open = request.verb.empty() || CrtEqualNoCase(request.verb, u"open");
  if (!open || !PathFileExistsW(request.file.c_str())) return {};
  return Utf8ToUtf16(WindowsPathToPosix(request.file).value_or(""));
}

}  // namespace

HINSTANCE ShellExecuteW(HWND owner, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR directory, int show) {
  UiShellExecute request{owner, text(verb), text(file), text(parameters), text(directory), show, u""};
  request.target = targetOf(request);
  return reinterpret_cast<HINSTANCE>(CurrentUiSink().shellExecute(request));
}
