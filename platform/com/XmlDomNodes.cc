// The node kinds of the XML DOM stand-in: plain nodes, elements, attributes
// and node lists, with the operations they share.
#include <cstring>
#include <mutex>

#include "com/XmlDom_internal.h"
#include "com/XmlDom_testing.h"
#include "win/Utf8.h"

namespace com_internal {
namespace {

std::atomic<long> gLiveObjects{0};
std::mutex gQueryFailureMutex;
IID gQueryFailureIid{};
HRESULT gQueryFailure = S_OK;
int gQueriesToPass = 0;                               // queries of gQueryFailureIid that still succeed first
std::atomic<bool> gQueryFailureArmed{false};          // lets queries skip the lock when no failure waits
std::atomic<HRESULT> gInjected[3]{S_OK, S_OK, S_OK};  // by Injected

std::string Narrow(const char16_t* text) { return Utf16ToUtf8(text ? std::u16string_view(text) : u""); }

// Collects what pugixml writes.
struct StringWriter : pugi::xml_writer {
  std::string text;
  void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }
};

std::string EscapeAttribute(const char* value) {
  std::string escaped;
  for (; *value; ++value) {
    switch (*value) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += *value;
    }
  }
  return escaped;
}

VARIANT StringVariant(const char* text) {
  VARIANT value;
  value.vt = VT_BSTR;
  value.bstrVal = Utf8ToUtf16(text);
  return value;
}

pugi::xpath_node ContextOf(const NodeRef& ref) {
  return ref.attribute ? pugi::xpath_node(ref.attribute, ref.node) : pugi::xpath_node(ref.node);
}

NodeRef RefOfSelected(const TreePtr& tree, const pugi::xpath_node& selected) {
  return selected.attribute() ? NodeRef{tree, selected.parent(), selected.attribute()}
                              : NodeRef{tree, selected.node(), {}};
}

// Runs an XPath query from the node; E_FAIL with a description for one that
// doesn't compile or doesn't give nodes.
HRESULT Evaluate(const NodeRef& ref, const char16_t* query, pugi::xpath_node_set* nodes) {
  try {
    pugi::xpath_query compiled(Narrow(query).c_str());
    *nodes = compiled.evaluate_node_set(ContextOf(ref));
    nodes->sort();
    return S_OK;
  } catch (const pugi::xpath_exception& error) {
    return Fail(E_FAIL, IID_IXMLDOMNode, Utf8ToUtf16(error.what()));
  }
}

class PlainNode final : public NodeObject<IXMLDOMNode> {
 public:
  using NodeObject::NodeObject;
};

class Element final : public NodeObject<IXMLDOMElement> {
 public:
  using NodeObject::NodeObject;

  HRESULT get_tagName(std::u16string* name) override { return NodeName(ref, name); }
  HRESULT getAttribute(const char16_t* name, VARIANT* value) override;
  HRESULT setAttribute(const char16_t* name, VARIANT value) override;
  HRESULT setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** old) override;

 protected:
  IUnknown* interfaceFor(REFIID riid) override {
    if (riid == IID_IXMLDOMElement) return static_cast<IXMLDOMElement*>(this);
    return NodeObject::interfaceFor(riid);
  }

 private:
  HRESULT checkNewAttribute(NodeRef* attribute) const;
};

class Attribute final : public NodeObject<IXMLDOMAttribute> {
 public:
  using NodeObject::NodeObject;

  HRESULT get_value(VARIANT* value) override {
    if (!value) return E_POINTER;
    *value = StringVariant(ref.attribute.value());
    return S_OK;
  }
  HRESULT put_value(VARIANT value) override {
    std::u16string text;
    if (HRESULT hr = TextOf(value, &text); FAILED(hr)) return hr;
    ref.attribute.set_value(Utf16ToUtf8(text).c_str());
    return S_OK;
  }

 protected:
  IUnknown* interfaceFor(REFIID riid) override {
    if (riid == IID_IXMLDOMAttribute) return static_cast<IXMLDOMAttribute*>(this);
    return NodeObject::interfaceFor(riid);
  }
};

// The result of a selection: a snapshot of the nodes, in document order.
class NodeList final : public DomObject<IXMLDOMNodeList> {
 public:
  NodeList(TreePtr tree, pugi::xpath_node_set nodes) : mTree(std::move(tree)), mNodes(std::move(nodes)) {}

  HRESULT get_length(LONG* length) override {
    if (!length) return E_POINTER;
    *length = static_cast<LONG>(mNodes.size());
    return S_OK;
  }
  HRESULT get_item(LONG index, IXMLDOMNode** node) override {
    if (!node) return E_POINTER;
    *node = nullptr;
    if (index < 0 || static_cast<std::size_t>(index) >= mNodes.size()) return S_FALSE;
    *node = WrapNode(RefOfSelected(mTree, mNodes[static_cast<std::size_t>(index)]));
    return S_OK;
  }

 protected:
  IUnknown* interfaceFor(REFIID riid) override {
    if (riid == IID_IUnknown || riid == IID_IXMLDOMNodeList) return static_cast<IXMLDOMNodeList*>(this);
    return nullptr;
  }

 private:
  TreePtr mTree;
  pugi::xpath_node_set mNodes;
};

HRESULT Element::getAttribute(const char16_t* name, VARIANT* value) {
  if (!name || !value) return E_POINTER;
  pugi::xml_attribute found = ref.node.attribute(Narrow(name).c_str());
  if (!found) {
    *value = VARIANT{};
    value->vt = VT_NULL;
    return S_FALSE;
  }
  *value = StringVariant(found.value());
  return S_OK;
}

HRESULT Element::setAttribute(const char16_t* name, VARIANT value) {
  if (!name) return E_POINTER;
  if (!IsXmlName(name)) return Fail(E_FAIL, IID_IXMLDOMElement, u"An attribute name must be an XML name.");
  std::u16string text;
  if (HRESULT hr = TextOf(value, &text); FAILED(hr)) return hr;
  std::string narrowName = Narrow(name);
  pugi::xml_attribute target = ref.node.attribute(narrowName.c_str());
  if (!target) target = ref.node.append_attribute(narrowName.c_str());
  target.set_value(Utf16ToUtf8(text).c_str());
  return S_OK;
}

// The place of an attribute node that may be put on this element.
HRESULT Element::checkNewAttribute(NodeRef* attribute) const {
  if (!attribute || !attribute->attribute)
    return Fail(E_INVALIDARG, IID_IXMLDOMElement, u"The node is not an attribute of this document.");
  if (attribute->tree->owner != ref.tree->owner)
    return Fail(E_INVALIDARG, IID_IXMLDOMElement, u"The attribute belongs to another document.");
  if (attribute->node != attribute->tree->attributeHolder)
    return Fail(E_FAIL, IID_IXMLDOMElement, u"The attribute stands on an element already.");
  return S_OK;
}

HRESULT Element::setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** old) {
  if (old) *old = nullptr;
  if (!attribute) return E_POINTER;
  NodeRef* place = RefOf(attribute);
  if (HRESULT hr = checkNewAttribute(place); FAILED(hr)) return hr;
  const char* name = place->attribute.name();
  pugi::xml_attribute target = ref.node.attribute(name);
  if (target && old) {
    NodeRef replaced = MakeDetachedAttribute(ref.tree->owner, name);
    replaced.attribute.set_value(target.value());
    *old = WrapAttribute(std::move(replaced));
  }
  if (!target) target = ref.node.append_attribute(name);
  target.set_value(place->attribute.value());
  *place = NodeRef{ref.tree, ref.node, target};
  return S_OK;
}

// Whether `node` is `candidate` or stands below it.
bool IsWithin(pugi::xml_node node, pugi::xml_node candidate) {
  for (; node; node = node.parent())
    if (node == candidate) return true;
  return false;
}

bool HasElementChild(pugi::xml_node node) {
  for (pugi::xml_node child : node.children())
    if (child.type() == pugi::node_element) return true;
  return false;
}

HRESULT CheckChild(const NodeRef& parent, const NodeRef* child) {
  if (!child) return Fail(E_INVALIDARG, IID_IXMLDOMNode, u"The node is not a node of this document.");
  if (child->tree->owner != parent.tree->owner || (child->tree != parent.tree && !child->tree->detached))
    return Fail(E_INVALIDARG, IID_IXMLDOMNode, u"The node belongs to another document.");
  if (parent.attribute || child->attribute || child->node.type() == pugi::node_document)
    return Fail(E_FAIL, IID_IXMLDOMNode, u"This node can't be inserted here.");
  if (child->tree == parent.tree && IsWithin(parent.node, child->node))
    return Fail(E_FAIL, IID_IXMLDOMNode, u"A node can't be inserted below itself.");
  if (parent.node.type() == pugi::node_document && child->node.type() == pugi::node_element &&
      HasElementChild(parent.node))
    return Fail(E_FAIL, IID_IXMLDOMNode, u"Only one top level element is allowed in an XML document.");
  return S_OK;
}

// Moves a node within its tree, or copies a detached one into the parent's.
pugi::xml_node PutBelow(const NodeRef& parent, const NodeRef& child) {
  pugi::xml_node target = parent.node;
  if (child.tree == parent.tree) return target.append_move(child.node);
  return target.append_copy(child.node);
}

const char* UnnamedKindName(pugi::xml_node_type type) {
  switch (type) {
    case pugi::node_document:
      return "#document";
    case pugi::node_pcdata:
      return "#text";
    case pugi::node_cdata:
      return "#cdata-section";
    case pugi::node_comment:
      return "#comment";
    case pugi::node_declaration:
      return "xml";
    default:
      return "";
  }
}

DOMNodeType KindOf(pugi::xml_node_type type) {
  switch (type) {
    case pugi::node_element:
      return NODE_ELEMENT;
    case pugi::node_document:
      return NODE_DOCUMENT;
    case pugi::node_pcdata:
      return NODE_TEXT;
    case pugi::node_cdata:
      return NODE_CDATA_SECTION;
    case pugi::node_comment:
      return NODE_COMMENT;
    case pugi::node_pi:
    case pugi::node_declaration:
      return NODE_PROCESSING_INSTRUCTION;
    case pugi::node_doctype:
      return NODE_DOCUMENT_TYPE;
    default:
      return NODE_INVALID;
  }
}

// Whether an attribute's UTF-8 text, read as UTF-16 (malformed sequences as
// U+FFFD), equals `text`. Byte comparison with `text` in UTF-8 says the same
// when `text` holds neither U+FFFD nor a lone surrogate, which is the usual
// case and needs no conversion of the attribute.
class TextComparison {
 public:
  explicit TextComparison(const char16_t* text) : mText(text) {
    if (!text) return;
    mBytesSuffice = !HasReplacementOrLoneSurrogate(text);
    if (mBytesSuffice) mBytes = Narrow(text);
  }
  bool equals(const char* utf8) const {
    if (!mText) return false;
    if (mBytesSuffice) return std::strcmp(utf8, mBytes.c_str()) == 0;
    return Utf8ToUtf16(utf8) == mText;
  }

 private:
  static bool HasReplacementOrLoneSurrogate(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      const char16_t unit = text[i];
      if (unit == 0xFFFD || (unit >= 0xDC00 && unit <= 0xDFFF)) return true;
      if (unit >= 0xD800 && unit <= 0xDBFF) {
        if (i + 1 == text.size() || text[i + 1] < 0xDC00 || text[i + 1] > 0xDFFF) return true;
        ++i;
      }
    }
    return false;
  }
  const char16_t* mText;
  bool mBytesSuffice = false;
  std::string mBytes;
};

bool IsNameStart(char16_t unit) {
  return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') || unit == u'_' || unit == u':' ||
         unit >= 0x80;
}

bool IsNameUnit(char16_t unit) {
  return IsNameStart(unit) || (unit >= u'0' && unit <= u'9') || unit == u'-' || unit == u'.';
}

}  // namespace

HRESULT Fail(HRESULT hr, REFIID iid, std::u16string_view description) {
  SetErrorInfo(0, CreateErrorInfoFor(iid, std::u16string(description)).GetInterfacePtr());
  return hr;
}

void CountObject(int delta) { gLiveObjects += delta; }

HRESULT TakeQueryFailure(REFIID iid) {
  if (!gQueryFailureArmed.load(std::memory_order_relaxed)) return S_OK;
  std::lock_guard lock(gQueryFailureMutex);
  if (!(gQueryFailureIid == iid) || gQueriesToPass-- > 0) return S_OK;
  gQueryFailureArmed = false;
  return std::exchange(gQueryFailure, S_OK);
}

HRESULT TakeInjectedFailure(Injected call) { return gInjected[static_cast<int>(call)].exchange(S_OK); }

IXMLDOMNode* WrapNode(NodeRef ref) {
  if (ref.attribute) return WrapAttribute(std::move(ref));
  if (ref.node.type() == pugi::node_element) return WrapElement(std::move(ref));
  return new PlainNode(std::move(ref));
}

NodeRef MakeDetachedAttribute(const void* owner, const char* name) {
  auto tree = std::make_shared<DomTree>(owner, true);
  pugi::xml_node holder = tree->attributeHolder = tree->xml.append_child("holder");
  return NodeRef{tree, holder, holder.append_attribute(name)};
}

IXMLDOMElement* WrapElement(NodeRef ref) { return new Element(std::move(ref)); }
IXMLDOMAttribute* WrapAttribute(NodeRef ref) { return new Attribute(std::move(ref)); }

NodeRef* RefOf(IUnknown* node) {
  auto* holder = dynamic_cast<NodeHolder*>(node);
  return holder ? &holder->ref : nullptr;
}

bool IsXmlName(const char16_t* name) {
  if (!name || !IsNameStart(name[0])) return false;
  for (const char16_t* unit = name + 1; *unit; ++unit)
    if (!IsNameUnit(*unit)) return false;
  return true;
}

// Whether XML 1.0 can hold `text`: tab, line feed, carriage return, U+0020
// to U+D7FF, U+E000 to U+FFFD, and U+10000 up as whole surrogate pairs.
bool IsXmlText(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (unit == u'\t' || unit == u'\n' || unit == u'\r') continue;
    if (unit < 0x20 || unit == 0xFFFE || unit == 0xFFFF) return false;
    if (unit >= 0xDC00 && unit <= 0xDFFF) return false;  // a low surrogate alone
    if (unit >= 0xD800 && unit <= 0xDBFF) {
      if (i + 1 == text.size() || text[i + 1] < 0xDC00 || text[i + 1] > 0xDFFF) return false;
      ++i;
    }
  }
  return true;
}

HRESULT TextOf(const VARIANT& value, std::u16string* text) {
  VARIANT converted;
  HRESULT hr = VariantChangeType(&converted, &value, 0, VT_BSTR);
  if (FAILED(hr)) return Fail(hr, IID_IXMLDOMNode, u"The value has no text.");
  if (!IsXmlText(converted.bstrVal)) {
    return Fail(E_INVALIDARG, IID_IXMLDOMNode, u"The text holds a character that XML cannot hold.");
  }
  *text = std::move(converted.bstrVal);
  return S_OK;
}

HRESULT NodeName(const NodeRef& ref, std::u16string* name) {
  if (!name) return E_POINTER;
  const char* text = ref.attribute ? ref.attribute.name() : ref.node.name();
  if (!ref.attribute && ref.node.type() != pugi::node_element && ref.node.type() != pugi::node_pi)
    text = UnnamedKindName(ref.node.type());
  *name = Utf8ToUtf16(text);
  return S_OK;
}

HRESULT NodeType(const NodeRef& ref, DOMNodeType* type) {
  if (!type) return E_POINTER;
  *type = ref.attribute ? NODE_ATTRIBUTE : KindOf(ref.node.type());
  return S_OK;
}

HRESULT NodeXml(const NodeRef& ref, std::u16string* xml) {
  if (!xml) return E_POINTER;
  if (ref.attribute) {
    *xml = Utf8ToUtf16(std::string(ref.attribute.name()) + "=\"" + EscapeAttribute(ref.attribute.value()) + "\"");
    return S_OK;
  }
  StringWriter writer;
  ref.node.print(writer, "", pugi::format_raw | pugi::format_no_declaration);
  *xml = Utf8ToUtf16(writer.text);
  return S_OK;
}

HRESULT SelectSingle(const NodeRef& ref, const char16_t* query, IXMLDOMNode** result) {
  if (!query || !result) return E_POINTER;
  *result = nullptr;
  pugi::xpath_node_set nodes;
  if (HRESULT hr = Evaluate(ref, query, &nodes); FAILED(hr)) return hr;
  if (nodes.empty()) return S_FALSE;
  *result = WrapNode(RefOfSelected(ref.tree, nodes.first()));
  return S_OK;
}

HRESULT SelectAll(const NodeRef& ref, const char16_t* query, IXMLDOMNodeList** result) {
  if (!query || !result) return E_POINTER;
  *result = nullptr;
  if (HRESULT injected = TakeInjectedFailure(Injected::selectNodes); FAILED(injected))
    return Fail(injected, IID_IXMLDOMNode, u"selectNodes failed (injected).");
  pugi::xpath_node_set nodes;
  if (HRESULT hr = Evaluate(ref, query, &nodes); FAILED(hr)) return hr;
  *result = new NodeList(ref.tree, std::move(nodes));
  return S_OK;
}

HRESULT AppendChild(const NodeRef& ref, IXMLDOMNode* child, IXMLDOMNode** result) {
  if (result) *result = nullptr;
  if (!child) return E_POINTER;
  NodeRef* place = RefOf(child);
  if (HRESULT hr = CheckChild(ref, place); FAILED(hr)) return hr;
  pugi::xml_node moved = PutBelow(ref, *place);
  if (!moved) return Fail(E_FAIL, IID_IXMLDOMNode, u"This node can't hold a child of that kind.");
  *place = NodeRef{ref.tree, moved, {}};
  if (result) {
    child->AddRef();
    *result = child;
  }
  return S_OK;
}

HRESULT FindChildElement(const NodeRef& ref, const char16_t* tagName, const char16_t* attributeName,
                         const char16_t* value, IXMLDOMElement** found) {
  if (!tagName || !attributeName || !found) return E_POINTER;
  *found = nullptr;
  if (!IsXmlName(tagName)) return Fail(E_INVALIDARG, IID_IXMLDOMChildLookup, u"The tag name must be an XML name.");
  if (HRESULT injected = TakeInjectedFailure(Injected::selectNodes); FAILED(injected))
    return Fail(injected, IID_IXMLDOMNode, u"selectNodes failed (injected).");
  if (ref.attribute) return S_FALSE;  // an attribute has no children
  const std::string tag = Narrow(tagName);
  const std::string attributeKey = Narrow(attributeName);
  const TextComparison wanted(value);
  for (pugi::xml_node child = ref.node.first_child(); child; child = child.next_sibling()) {
    if (child.type() != pugi::node_element || std::strcmp(child.name(), tag.c_str()) != 0) continue;
    if (HRESULT query = TakeQueryFailure(IID_IXMLDOMElement); query == E_NOINTERFACE) {
      continue;
    } else if (FAILED(query)) {
      SetErrorInfo(0, nullptr);
      return query;
    }
    pugi::xml_attribute attribute = child.attribute(attributeKey.c_str());
    if (!attribute || wanted.equals(attribute.value())) {
      *found = WrapElement(NodeRef{ref.tree, child, {}});
      return S_OK;
    }
  }
  return S_FALSE;
}

}  // namespace com_internal

namespace {
void Inject(com_internal::Injected call, HRESULT hr) { com_internal::gInjected[static_cast<int>(call)] = hr; }
}  // namespace

void com_testing::failNextLoad(HRESULT hr) { Inject(com_internal::Injected::load, hr); }
void com_testing::failNextSave(HRESULT hr) { Inject(com_internal::Injected::save, hr); }
void com_testing::failNextSelectNodes(HRESULT hr) { Inject(com_internal::Injected::selectNodes, hr); }

void com_testing::resetDomFailures() {
  for (auto call : {com_internal::Injected::load, com_internal::Injected::save, com_internal::Injected::selectNodes})
    Inject(call, S_OK);
  failNextQueryInterface(IID_IUnknown, S_OK);
}

void com_testing::failNextQueryInterface(REFIID iid, HRESULT hr, int passFirst) {
  std::lock_guard lock(com_internal::gQueryFailureMutex);
  com_internal::gQueryFailureIid = iid;
  com_internal::gQueryFailure = hr;
  com_internal::gQueriesToPass = passFirst;
  com_internal::gQueryFailureArmed = FAILED(hr);
}

long com_testing::liveDomObjects() { return com_internal::gLiveObjects; }
