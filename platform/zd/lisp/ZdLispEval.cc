#include "zd/lisp/ZdLispEval.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string_view>

#include "win/CrtChar.h"
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode.h"
#include "zd/lisp/ZdLisp.h"

namespace {

struct DefunNames {
  std::mutex mutex;
  std::vector<std::u16string> names;
};

DefunNames& defunNames() {
  static DefunNames d;
  return d;
}

std::u16string_view trimmed(std::u16string_view text) {
  while (!text.empty() && CrtIsSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && CrtIsSpace(text.back())) text.remove_suffix(1);
  return text;
}

// The name of "(vl-zeda-defun 'name)"; nullopt for any other text.
std::optional<std::u16string> defunNameOf(std::u16string_view expression) {
  constexpr std::u16string_view kHead = u"(VL-ZEDA-DEFUN";
  expression = trimmed(expression);
  if (expression.size() <= kHead.size() + 1 || expression.back() != u')') return std::nullopt;
  if (CrtUpperCopy(expression.substr(0, kHead.size())) != kHead) return std::nullopt;
  std::u16string_view rest = trimmed(expression.substr(kHead.size(), expression.size() - kHead.size() - 1));
  if (rest.empty() || rest.front() != u'\'') return std::nullopt;
  rest = trimmed(rest.substr(1));
  if (rest.empty() || rest.find_first_of(u" \t()'") != std::u16string_view::npos) return std::nullopt;
  return std::u16string(rest);
}

void rememberDefun(const std::u16string& name) {
  std::lock_guard lock(defunNames().mutex);
  auto& names = defunNames().names;
  if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

int evalString(const ZdValueNode* args, ZdValueNode** reply) {
  if (!args || args->restype != RTSTR || !args->resval.rstring) return RTERROR;
  const std::optional<std::u16string> name = defunNameOf(args->resval.rstring);
  if (!name) return RTERROR;
  *reply = zdutNewRb(RTT);
  if (!*reply) return RTERROR;
  rememberDefun(*name);
  return RTNORM;
}

const ZdLispRegistrar kEvalString(u"veval-str+", evalString);

}  // namespace

std::vector<std::u16string> zdLispDefunNames() {
  std::lock_guard lock(defunNames().mutex);
  return defunNames().names;
}
