// OhmCfgXML: the suite's application settings in the XML file "App.config",
// in the folder named by the suite's global value "GBL_wd_DocSetBase". The
// file holds a `Settings` root, `Setting` elements named by a setting type,
// and in each `Property` elements with a `Name` and a `Value`:
//
//   <Settings>
//     <Setting Name="SchSortOrder">
//       <Property Name="..." Value="..."/>
//
// One instance per process, made on first use (safely against racing
// threads). It holds at most one DOM document. Calling order: GetInstance,
// loadCfgXML (must say true), any getSetting/setSetting, then saveCfgXML if
// the changes belong in the file; saveCfgXML lets go of the document, so the
// next read or write needs another loadCfgXML. What isn't saved is lost at the
// next load and at unload. Nothing else in the file is read or changed.
//
// Failures: loading answers false; everything else raises _com_error, which
// this class never catches: a DOM call's failure with its code and the
// interface's error information, E_POINTER without a document or a `Settings`
// element, E_OUTOFMEMORY without memory for a string.
//
// Thread safety: only GetInstance is guarded. The document belongs to one
// thread at a time, and that thread must have started COM (CoInitializeEx).
#pragma once

#include "com/XmlDom.h"
#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/config/ConfigurationXML.h"

class OHMUTILS_EXPORT OhmCfgXML {
 public:
  // The one instance; its file path is "GBL_wd_DocSetBase" + "App.config", as the value was at this first call.
  static OhmCfgXML& GetInstance();

  OhmCfgXML(const OhmCfgXML&) = delete;
  OhmCfgXML& operator=(const OhmCfgXML&) = delete;

  // Loads the file afresh, forgetting what wasn't saved. False when the
  // document object can't be made (no document then), the file is missing,
  // unreadable or not well-formed (an empty document held), or its root isn't
  // `Settings` (the document held).
  bool loadCfgXML();
  // Writes the document over the file and lets go of it: true. Raises
  // _com_error with E_POINTER without a document, and with the save's code
  // when it fails (the document then stays).
  bool saveCfgXML();
  // The `Value` of the first `Property` named `propertyName` (exact, with
  // case) in the first `Setting` of `type`; empty when there is none, or the
  // property has no `Value`. Raises _com_error (see above).
  CString getSetting(ConfigurationXML::SettingType type, const WCHAR* propertyName);
  // Sets that `Value` in memory, adding the `Setting` at the end of `Settings`
  // and the `Property` at the end of its `Setting` when missing: true. Raises
  // _com_error (see above).
  bool setSetting(CString value, ConfigurationXML::SettingType type, const WCHAR* propertyName);
  // A new `Setting` element named after `type` (empty name for an unknown
  // type), appended to `Settings`. Raises _com_error with E_POINTER without
  // a document or, after making the element, without a `Settings` element.
  IXMLDOMElementPtr setDefaultNode(ConfigurationXML::SettingType type);
  // Appends a new `Property` with `Name` then `Value` to `settingNode`.
  // Raises _com_error with E_POINTER without a document or node.
  void setDefaultSetting(CString value, IXMLDOMNodePtr settingNode, const WCHAR* propertyName);

 private:
  OhmCfgXML();
  ~OhmCfgXML();  // lets go of the document without saving

  bool loadDocument();
  IXMLDOMNodeListPtr getSettingsListPtr();
  bool getConfiguration(IXMLDOMElementPtr& setting, ConfigurationXML::SettingType type);
  CString getSettingTypeAsString(ConfigurationXML::SettingType type);
  bool setPropertyNodeValue(IXMLDOMNodeListPtr& properties, const WCHAR* propertyName, _variant_t value);

  CString mFilePath;              // set once, in the constructor
  IXMLDOMDocument2Ptr mDocument;  // null when there is no document
};
