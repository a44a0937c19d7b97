#include "zd/app/GblPm.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "win/Utf8.h"
#include "zd/ZdCodes.h"

namespace {

struct NodeRelease {
  void operator()(ZdValueNode* node) const { zdutRelRb(node); }
};
using NodePtr = std::unique_ptr<ZdValueNode, NodeRelease>;

struct GlobalValue {
  std::optional<std::u16string> text;  // nullopt: known to have no value
  NodePtr node;
};

std::mutex gMutex;
std::map<std::u16string, GlobalValue>& values() {
  static std::map<std::u16string, GlobalValue> table;
  return table;
}

// The entry for `name`, seeded from the environment at its first look-up.
GlobalValue& entry(const std::u16string& name) {
  auto [it, inserted] = values().try_emplace(name);
  if (inserted) {
    const char* seeded = std::getenv(("OHM_" + Utf16ToUtf8(name)).c_str());
    if (seeded) it->second.text = Utf8ToUtf16(seeded);
  }
  return it->second;
}

}  // namespace

std::u16string GblPm_GetCachedGblValue(const char16_t* name) {
  if (!name) return {};
  std::lock_guard lock(gMutex);
  const GlobalValue& value = entry(name);
  return value.text.value_or(std::u16string());
}

ZdValueNode* GblPm_GetGblValue(const char16_t* name) {
  if (!name) return nullptr;
  std::lock_guard lock(gMutex);
  GlobalValue& value = entry(name);
  if (!value.text) return nullptr;
  if (!value.node) value.node.reset(zdutBuildList(RTSTR, value.text->c_str(), 0));
  return value.node.get();
}

void GblPm_SetGblValue(const char16_t* name, const char16_t* value) {
  if (!name) return;
  std::lock_guard lock(gMutex);
  GlobalValue& entryValue = entry(name);
  entryValue.node.reset();
  entryValue.text = value ? std::optional<std::u16string>(value) : std::nullopt;
}
