// Fuzz target of the XML settings file: any bytes as App.config either
// don't load, or load, take a set property and save, and what was saved
// loads again with that property; a settings file of the wrong shape may
// refuse the set with _com_error, as the class documents. Never a crash, a
// hang or a leak.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

#include "com/ComApartment.h"
#include "com/ComError.h"
#include "ohmutils/config/OhmCfgXML.h"
#include "support/TempFolder.h"
#include "zd/app/GblPm.h"

namespace {

// A folder of this process for App.config, named to the settings once.
const TempFolder& Folder() {
  static const TempFolder folder;
  static const bool named = [] {
    GblPm_SetGblValue(u"GBL_wd_DocSetBase", (folder.windows() + u"\\\\").c_str());
    return SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
  }();
  (void)named;
  return folder;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::ofstream(Folder().posix("App.config"), std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  OhmCfgXML& config = OhmCfgXML::GetInstance();
  if (!config.loadCfgXML()) return 0;
  const auto type = static_cast<ConfigurationXML::SettingType>(size % 6);
  try {
    if (!config.setSetting(CString(u"fuzzed \u00E9 <&>"), type, u"Fuzz") || !config.saveCfgXML()) return 0;
  } catch (const _com_error&) {
    return 0;
  }
  if (!config.loadCfgXML()) __builtin_trap();  // what was saved must load again
  if (config.getSetting(type, u"Fuzz") != CString(u"fuzzed \u00E9 <&>")) __builtin_trap();
  config.saveCfgXML();
  return 0;
}
