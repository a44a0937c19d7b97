#include "SettingsCommands.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <iostream>

#include "CommandError.h"
#include "Drawing.h"
#include "com/ComApartment.h"
#include "com/ComError.h"
#include "ohmutils/config/OhmCfgXML.h"
#include "ohmutils/config/OhmRegSetting.h"
#include "win/Utf8.h"
#include "win/WinError.h"
#include "win/registry/Registry.h"
#include "zd/app/GblPm.h"
#include "zd/app/ZdHostApplicationServices.h"

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

// The text of an argument; an argument that isn't UTF-8 is refused, not
// turned into replacement characters.
std::u16string Wide(const std::string& text, const char* what) {
  std::u16string wide = Utf8ToUtf16(text);
  if (Utf16ToUtf8(wide) != text) FailBadInput(std::string(what) + " is not valid UTF-8");
  return wide;
}

// The first character of `text` that XML 1.0 can't hold, as U+XXXX; empty when none.
std::string FirstNonXmlCharacter(const std::u16string& text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    const bool pair =
        unit >= 0xD800 && unit <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
    if (pair) {
      ++i;
      continue;
    }
    const bool allowed = unit == 0x9 || unit == 0xA || unit == 0xD || (unit >= 0x20 && unit < 0xD800) ||
                         (unit >= 0xE000 && unit <= 0xFFFD);
    if (allowed) continue;
    char code[16];
    std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned>(unit));
    return code;
  }
  return {};
}

// The longest setting value the library reads back, in UTF-16 units.
constexpr std::size_t kLongestSetting = 1998;

// The length in UTF-16 units of the stored text of a setting; 0 when there is none.
std::size_t StoredLength(const std::u16string& section, const std::u16string& name) {
  const std::u16string path =
      std::u16string(zddbHostApplicationServices()->getUserRegistryProductRootKey()) + u"\\Settings\\" + section;
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return 0;
  DWORD type = 0, size = 0;
  const LONG status = RegQueryValueExW(key, name.c_str(), nullptr, &type, nullptr, &size);
  RegCloseKey(key);
  return status == ERROR_SUCCESS && type == REG_SZ ? size / sizeof(char16_t) : 0;
}

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
  const std::u16string name = Wide(property, "PROPERTY");
  const std::optional<std::u16string> text = value ? std::optional(Wide(*value, "VALUE")) : std::nullopt;
  if (text) {
    if (const std::string bad = FirstNonXmlCharacter(*text); !bad.empty()) {
      FailBadInput("VALUE holds " + bad + ", which an XML settings file can't hold");
    }
  }
  try {
    if (!value) {
      std::cout << Narrow(config.getSetting(settingType, name.c_str()).GetString()) << '\n';
      return kExitSuccess;
    }
    if (!config.setSetting(CString(text->c_str()), settingType, name.c_str()) || !config.saveCfgXML()) {
      FailOperation(folder + "/App.config: the property couldn't be set and saved");
    }
  } catch (const _com_error& error) {
    FailOperation(folder + "/App.config: " + Narrow(error.ErrorMessage()));
  }
  return kExitSuccess;
}

int RunReg(const std::string& section, const std::string& name, const std::optional<std::string>& value) {
  const std::u16string wideSection = Wide(section, "SECTION"), wideName = Wide(name, "NAME");
  if (value) {
    const std::u16string text = Wide(*value, "VALUE");
    if (text.size() > kLongestSetting) {
      FailBadInput("VALUE is " + std::to_string(text.size()) + " UTF-16 units long; a setting holds at most " +
                   std::to_string(kLongestSetting));
    }
    if (OhmSetRegSetting(wideSection.c_str(), wideName.c_str(), text.c_str())) return kExitSuccess;
    FailOperation("the setting " + section + "\\" + name + " couldn't be written");
  }
  CString text;
  if (!OhmGetRegSetting(wideSection.c_str(), wideName.c_str(), text)) {
    if (StoredLength(wideSection, wideName) > kLongestSetting + 1) {
      FailOperation("the setting " + section + "\\" + name + " is too long to read: more than " +
                    std::to_string(kLongestSetting) + " UTF-16 units");
    }
    FailOperation("no setting " + section + "\\" + name);
  }
  std::cout << Narrow(text.GetString()) << '\n';
  return kExitSuccess;
}
