#include "SettingsCommands.h"

#include <array>
#include <charconv>
#include <iostream>

#include "CommandError.h"
#include "Drawing.h"
#include "com/ComApartment.h"
#include "com/ComError.h"
#include "ohmutils/config/OhmCfgXML.h"
#include "ohmutils/config/OhmRegSetting.h"
#include "win/Utf8.h"
#include "zd/app/GblPm.h"

namespace {

constexpr std::array<const char*, 6> kTypeNames = {"Connector_Imperial", "Connector_Metric", "DefaultBrowsePath",
                                                   "SchSortOrder",       "TermSchSortOrder", "AuditSettings"};

ConfigurationXML::SettingType ParseType(const std::string& text) {
  for (std::size_t i = 0; i < kTypeNames.size(); ++i) {
    if (text == kTypeNames[i]) return static_cast<ConfigurationXML::SettingType>(i);
  }
  int number = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc() && end == text.data() + text.size() && number >= 0 && number < 6) {
    return static_cast<ConfigurationXML::SettingType>(number);
  }
  std::string names;
  for (const char* name : kTypeNames) names += std::string(names.empty() ? "" : ", ") + name;
  FailBadInput("TYPE: \"" + text + "\" is no setting type; expected 0 to 5 or one of " + names);
}

// COM started on this thread for as long as the command runs.
class ComSession {
 public:
  ComSession() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~ComSession() { CoUninitialize(); }
  ComSession(const ComSession&) = delete;
  ComSession& operator=(const ComSession&) = delete;
};

std::string Narrow(const std::u16string& text) { return Utf16ToUtf8(text); }

}  // namespace

int RunConfig(const std::string& folder, const std::string& type, const std::string& property,
              const std::optional<std::string>& value) {
  const ConfigurationXML::SettingType settingType = ParseType(type);
  std::u16string base = WindowsPathOf(folder);
  if (base.empty() || base.back() != u'\\') base += u'\\';
  GblPm_SetGblValue(u"GBL_wd_DocSetBase", base.c_str());  // read by the first GetInstance
  ComSession com;
  OhmCfgXML& config = OhmCfgXML::GetInstance();
  if (!config.loadCfgXML()) FailBadInput(folder + "/App.config: missing, not well-formed or not a settings file");
  const std::u16string name = Utf8ToUtf16(property);
  try {
    if (!value) {
      std::cout << Narrow(config.getSetting(settingType, name.c_str()).GetString()) << '\n';
      return kExitSuccess;
    }
    if (!config.setSetting(CString(Utf8ToUtf16(*value).c_str()), settingType, name.c_str()) || !config.saveCfgXML()) {
      FailOperation(folder + "/App.config: the property couldn't be set and saved");
    }
  } catch (const _com_error& error) {
    FailOperation(folder + "/App.config: " + Narrow(error.ErrorMessage()));
  }
  return kExitSuccess;
}

int RunReg(const std::string& section, const std::string& name, const std::optional<std::string>& value) {
  const std::u16string wideSection = Utf8ToUtf16(section), wideName = Utf8ToUtf16(name);
  if (value) {
    if (OhmSetRegSetting(wideSection.c_str(), wideName.c_str(), Utf8ToUtf16(*value).c_str())) return kExitSuccess;
    FailOperation("the setting " + section + "\\" + name + " couldn't be written");
  }
  CString text;
  if (!OhmGetRegSetting(wideSection.c_str(), wideName.c_str(), text)) {
    FailOperation("no setting " + section + "\\" + name);
  }
  std::cout << Narrow(text.GetString()) << '\n';
  return kExitSuccess;
}
