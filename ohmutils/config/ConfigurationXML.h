// The setting types of the XML settings file "App.config": each names one
// `Setting` element. A 32-bit integer at the exported boundary; values
// outside 0 to 5 name no element.
#pragma once

#include <cstdint>

namespace ConfigurationXML {

enum SettingType : std::int32_t {
  Connector_Imperial = 0,  // "Connector_Imperial"
  Connector_Metric = 1,    // "Connector_Metric"
  DefaultBrowsePath = 2,   // "DefaultBrowsePath"
  SchSortOrder = 3,        // "SchSortOrder"
  TermSchSortOrder = 4,    // "TermSchSortOrder"
  AuditSettings = 5,       // "AuditSettings"
};

}  // namespace ConfigurationXML
