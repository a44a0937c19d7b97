#include "ohmutils/config/OhmCfgXML.h"

#include <array>

#include "com/ComApartment.h"
#include "com/ComError.h"
#include "zd/app/GblPm.h"

namespace {

constexpr std::array<const WCHAR*, 6> kSettingNames{
    u"Connector_Imperial", u"Connector_Metric", u"DefaultBrowsePath",
    u"SchSortOrder",       u"TermSchSortOrder", u"AuditSettings",
};

// The error information that `source` offers for failures of `iid`, with a
// reference for the caller; null when it offers none.
IErrorInfo* errorInfoOf(IUnknown* source, REFIID iid) {
  ISupportErrorInfoPtr support;
  IErrorInfo* info = nullptr;
  if (SUCCEEDED(support.QueryFrom(source)) && support->InterfaceSupportsErrorInfo(iid) == S_OK) GetErrorInfo(0, &info);
  return info;
}

// Raises a failed call on `source` as _com_error, with the interface's error information.
template <class Interface>
void check(HRESULT hr, Interface* source) {
  if (FAILED(hr)) throw _com_error(hr, errorInfoOf(source, Interface::iid));
}

// The interface held, or _com_error with E_POINTER when there is none, as
// the platform's smart pointer raises on a call through null.
template <class T>
T* use(const _com_ptr_t<T>& pointer) {
  if (!pointer) throw _com_error(E_POINTER);
  return pointer.GetInterfacePtr();
}

// `source` as interface Q; null when `source` is null or lacks Q
// (E_NOINTERFACE); any other failure of the query is raised.
template <class Q, class S>
_com_ptr_t<Q> queryOrNull(const _com_ptr_t<S>& source) {
  _com_ptr_t<Q> result;
  if (!source) return result;
  HRESULT hr = result.QueryFrom(source.GetInterfacePtr());
  if (FAILED(hr) && hr != E_NOINTERFACE) throw _com_error(hr);
  return result;
}

// An attribute as text: a string as it is, any other variant converted;
// raises the conversion's failure (a missing attribute is a null variant).
CString attributeText(IXMLDOMElement* element, const WCHAR* name) {
  _variant_t value;
  check(element->getAttribute(name, &value), element);
  if (value.vt != VT_BSTR) {
    HRESULT hr = VariantChangeType(&value, &value, 0, VT_BSTR);
    if (FAILED(hr)) throw _com_error(hr);
  }
  return CString(value.bstrVal);
}

// The first element of `list` whose `Name` is `name` (whole, with case);
// null when none is, or `name` is null. Every element looked at must have a
// `Name`; nodes that aren't elements are passed over.
IXMLDOMElementPtr findNamed(const IXMLDOMNodeListPtr& list, const WCHAR* name) {
  LONG length = 0;
  check(use(list)->get_length(&length), list.GetInterfacePtr());
  for (LONG index = 0; index < length; ++index) {
    IXMLDOMNodePtr node;
    check(list->get_item(index, &node), list.GetInterfacePtr());
    IXMLDOMElementPtr element = queryOrNull<IXMLDOMElement>(node);
    if (!element) continue;
    CString elementName = attributeText(element.GetInterfacePtr(), u"Name");
    if (name && elementName == name) return element;
  }
  return nullptr;
}

IXMLDOMNodeListPtr childrenNamed(const IXMLDOMElementPtr& element, const WCHAR* name) {
  IXMLDOMNodeListPtr list;
  check(use(element)->selectNodes(name, &list), element.GetInterfacePtr());
  return list;
}

// The first child element `tag` of `parent` whose `Name` is `name`, as
// findNamed finds it in selectNodes(tag): by the DOM's child lookup, which
// passes over the other children without node objects or text copies, or
// by the list where the DOM doesn't offer the lookup.
IXMLDOMElementPtr findChildNamed(const IXMLDOMElementPtr& parent, const WCHAR* tag, const WCHAR* name) {
  IXMLDOMChildLookupPtr lookup = queryOrNull<IXMLDOMChildLookup>(parent);
  if (!lookup) return findNamed(childrenNamed(parent, tag), name);
  IXMLDOMElementPtr found;
  check(lookup->findChildElement(tag, u"Name", name, &found), lookup.GetInterfacePtr());
  // The lookup stops at a child without a Name as well: reading it raises, as the walk does.
  if (found) attributeText(found.GetInterfacePtr(), u"Name");
  return found;
}

// Puts a new attribute `name` with `value` on `element`, behind the others.
void appendAttribute(IXMLDOMDocument2* document, const IXMLDOMElementPtr& element, const WCHAR* name,
                     const WCHAR* value) {
  IXMLDOMAttributePtr attribute;
  check(document->createAttribute(name, &attribute), document);
  check(attribute->put_value(_variant_t(value)), attribute.GetInterfacePtr());
  check(use(element)->setAttributeNode(attribute.GetInterfacePtr(), nullptr), element.GetInterfacePtr());
}

// The `Settings` element of `document`; null without a document or without
// such an element (a node that isn't an element counts as none).
IXMLDOMElementPtr settingsElement(const IXMLDOMDocument2Ptr& document) {
  if (!document) return nullptr;
  IXMLDOMNodePtr node;
  check(document->selectSingleNode(u"Settings", &node), document.GetInterfacePtr());
  return queryOrNull<IXMLDOMElement>(node);
}

// A new DOMDocument60 object; null when it can't be made.
IXMLDOMDocument2Ptr createDocument() {
  IUnknownPtr unknown;
  if (FAILED(
          CoCreateInstance(CLSID_DOMDocument60, nullptr, CLSCTX_ALL, IID_IUnknown, reinterpret_cast<void**>(&unknown))))
    return nullptr;
  if (FAILED(OleRun(unknown.GetInterfacePtr()))) return nullptr;
  IXMLDOMDocument2Ptr document;
  document.QueryFrom(unknown.GetInterfacePtr());
  return document;
}

}  // namespace

OhmCfgXML& OhmCfgXML::GetInstance() {
  static OhmCfgXML instance;
  return instance;
}

OhmCfgXML::OhmCfgXML() {
  // The global value ends in a separator, so the name follows it directly.
  mFilePath = CString(GblPm_GetCachedGblValue(u"GBL_wd_DocSetBase"));
  mFilePath += u"App.config";
}

OhmCfgXML::~OhmCfgXML() = default;

bool OhmCfgXML::loadCfgXML() { return loadDocument() && getSettingsListPtr(); }

bool OhmCfgXML::loadDocument() {
  mDocument = nullptr;
  mDocument = createDocument();
  if (!mDocument) return false;
  VARIANT_BOOL loaded = VARIANT_FALSE;
  HRESULT hr = mDocument->load(_variant_t(mFilePath), &loaded);
  if (FAILED(hr) || loaded != VARIANT_TRUE) return false;
  IXMLDOMElementPtr root;
  check(mDocument->get_documentElement(&root), mDocument.GetInterfacePtr());
  std::u16string tagName;
  check(use(root)->get_tagName(&tagName), root.GetInterfacePtr());
  return tagName == u"Settings";
}

bool OhmCfgXML::saveCfgXML() {
  _variant_t path(mFilePath);
  IXMLDOMDocument2* document = use(mDocument);
  check(document->save(path), document);
  mDocument = nullptr;
  return true;
}

IXMLDOMNodeListPtr OhmCfgXML::getSettingsListPtr() {
  IXMLDOMElementPtr settings = settingsElement(mDocument);
  if (!settings) return nullptr;
  return childrenNamed(settings, u"Setting");
}

bool OhmCfgXML::getConfiguration(IXMLDOMElementPtr& setting, ConfigurationXML::SettingType type) {
  setting = nullptr;
  IXMLDOMElementPtr settings = settingsElement(mDocument);
  if (!settings) throw _com_error(E_POINTER);
  // An unknown type matches no element, though each element's Name is still read.
  bool known = type >= 0 && static_cast<std::size_t>(type) < kSettingNames.size();
  setting = findChildNamed(settings, u"Setting", known ? getSettingTypeAsString(type).GetString() : nullptr);
  return static_cast<bool>(setting);
}

CString OhmCfgXML::getSettingTypeAsString(ConfigurationXML::SettingType type) {
  if (type < 0 || static_cast<std::size_t>(type) >= kSettingNames.size()) return CString();
  return CString(kSettingNames[static_cast<std::size_t>(type)]);
}

CString OhmCfgXML::getSetting(ConfigurationXML::SettingType type, const WCHAR* propertyName) {
  IXMLDOMElementPtr setting;
  if (!getConfiguration(setting, type)) return CString();
  IXMLDOMElementPtr property = findChildNamed(setting, u"Property", propertyName);
  if (!property) return CString();
  _variant_t value;
  check(property->getAttribute(u"Value", &value), property.GetInterfacePtr());
  // A Property without a Value reads as the empty text.
  return value.vt == VT_BSTR ? CString(value.bstrVal) : CString();
}

bool OhmCfgXML::setSetting(CString value, ConfigurationXML::SettingType type, const WCHAR* propertyName) {
  IXMLDOMElementPtr setting;
  if (!getConfiguration(setting, type)) setting = setDefaultNode(type);
  IXMLDOMNodeListPtr properties = childrenNamed(setting, u"Property");
  if (!setPropertyNodeValue(properties, propertyName, _variant_t(value)))
    setDefaultSetting(value, queryOrNull<IXMLDOMNode>(setting), propertyName);
  return true;
}

bool OhmCfgXML::setPropertyNodeValue(IXMLDOMNodeListPtr& properties, const WCHAR* propertyName, _variant_t value) {
  IXMLDOMElementPtr property = findNamed(properties, propertyName);
  if (!property) return false;
  check(property->setAttribute(u"Value", value), property.GetInterfacePtr());
  return true;
}

IXMLDOMElementPtr OhmCfgXML::setDefaultNode(ConfigurationXML::SettingType type) {
  IXMLDOMDocument2* document = use(mDocument);
  IXMLDOMElementPtr setting;
  check(document->createElement(u"Setting", &setting), document);
  appendAttribute(document, setting, u"Name", getSettingTypeAsString(type));
  IXMLDOMNodePtr settings;
  check(document->selectSingleNode(u"Settings", &settings), document);
  check(use(settings)->appendChild(setting.GetInterfacePtr(), nullptr), settings.GetInterfacePtr());
  return setting;
}

void OhmCfgXML::setDefaultSetting(CString value, IXMLDOMNodePtr settingNode, const WCHAR* propertyName) {
  IXMLDOMDocument2* document = use(mDocument);
  IXMLDOMNodePtr node;
  check(document->createNode(_variant_t(NODE_ELEMENT, VT_INT), u"Property", u"", &node), document);
  IXMLDOMElementPtr property = queryOrNull<IXMLDOMElement>(node);
  appendAttribute(document, property, u"Name", propertyName);
  appendAttribute(document, property, u"Value", value);
  check(use(settingNode)->appendChild(use(node), nullptr), settingNode.GetInterfacePtr());
}
