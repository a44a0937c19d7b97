// What the XML DOM stand-in's files share: the trees, where a node is, the
// COM object base, and the failure helper. Never seen by the library.
#pragma once

#include <pugixml.hpp>

#include <atomic>
#include <memory>
#include <string>
#include <string_view>

#include "com/ComError.h"
#include "com/XmlDom.h"

namespace com_internal {

// One pugixml tree: the content of a document, or a tree that holds one node
// made by create* until appendChild or setAttributeNode copies it into the
// document. pugixml nodes can't stand outside a tree, hence the small trees.
struct DomTree {
  DomTree(const void* documentId, bool isDetached) : owner(documentId), detached(isDetached) {}
  pugi::xml_document xml;
  const void* owner;                                  // the document object that made the tree (identity only)
  bool detached;                                      // a holder for a node made by create*
  pugi::xml_node attributeHolder;                     // in a detached tree of an attribute: the element it waits on
  pugi::xml_encoding encoding = pugi::encoding_utf8;  // the encoding a save writes
};
using TreePtr = std::shared_ptr<DomTree>;

// Where a node is. For an attribute, `node` is the element it stands on (or
// its holder) and `attribute` the attribute itself.
struct NodeRef {
  TreePtr tree;
  pugi::xml_node node;
  pugi::xml_attribute attribute;
};

// The part of every node object that the others reach through a cross-cast.
struct NodeHolder {
  virtual ~NodeHolder() = default;
  NodeRef ref;
};

// Puts error information for interface `iid` on the thread and gives `hr`.
HRESULT Fail(HRESULT hr, REFIID iid, std::u16string_view description);

// Counts live DOM objects for the test seam.
void CountObject(int delta);

// The pending injected failure for a query of `iid` by a caller, taken once
// its turn comes; S_OK if none. The stand-in's own code doesn't query.
HRESULT TakeQueryFailure(REFIID iid);
// The calls whose failure a test can inject (com/XmlDom_testing.h).
enum class Injected { load, save, selectNodes };
// The pending injected failure of `call`, taken once; S_OK if none.
HRESULT TakeInjectedFailure(Injected call);

// A new node object (counted reference) for the node at `ref`: an element,
// an attribute, or a plain node for the other kinds.
IXMLDOMNode* WrapNode(NodeRef ref);
// The same for a place known to be an element, or an attribute.
IXMLDOMElement* WrapElement(NodeRef ref);
IXMLDOMAttribute* WrapAttribute(NodeRef ref);
// A new attribute named `name`, empty, standing apart in a tree of its own
// made for document `owner`.
NodeRef MakeDetachedAttribute(const void* owner, const char* name);
// The place of a node object of this stand-in; null for anything else.
NodeRef* RefOf(IUnknown* node);

// Whether `name` is an XML name (start letter, '_' or ':'; then also digits,
// '-' and '.'; units from U+0080 up count as letters).
bool IsXmlName(const char16_t* name);

// The text of a variant, converted as the DOM converts values; the
// conversion's failure otherwise, and E_INVALIDARG for a text that XML 1.0
// can't hold (control characters, U+FFFE, U+FFFF, a surrogate alone), which
// the document never takes.
HRESULT TextOf(const VARIANT& value, std::u16string* text);

// Makes the DOMDocument60 object and asks it for `riid`.
HRESULT CreateDomDocument(REFIID riid, void** object);

// The COM object base: reference count, the interface table and error
// information support. `Interface` is the most derived interface offered.
template <class Interface>
class DomObject : public Interface, public ISupportErrorInfo {
 public:
  DomObject() { CountObject(1); }
  DomObject(const DomObject&) = delete;
  DomObject& operator=(const DomObject&) = delete;

  HRESULT QueryInterface(REFIID riid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (HRESULT injected = TakeQueryFailure(riid); FAILED(injected)) return injected;
    IUnknown* offered = riid == IID_ISupportErrorInfo ? static_cast<ISupportErrorInfo*>(this) : interfaceFor(riid);
    if (!offered) return E_NOINTERFACE;
    offered->AddRef();
    *object = offered;
    return S_OK;
  }
  ULONG AddRef() override { return ++mRefs; }
  ULONG Release() override {
    ULONG left = --mRefs;
    if (left == 0) delete this;
    return left;
  }
  HRESULT InterfaceSupportsErrorInfo(REFIID riid) override { return interfaceFor(riid) ? S_OK : S_FALSE; }

 protected:
  ~DomObject() override { CountObject(-1); }
  // The interface of id `riid` that this object offers (IUnknown included), or null.
  virtual IUnknown* interfaceFor(REFIID riid) = 0;

 private:
  std::atomic<ULONG> mRefs{1};
};

// The operations every node kind shares, over the node's place.
HRESULT NodeName(const NodeRef& ref, std::u16string* name);
HRESULT NodeType(const NodeRef& ref, DOMNodeType* type);
HRESULT NodeXml(const NodeRef& ref, std::u16string* xml);
HRESULT SelectSingle(const NodeRef& ref, const char16_t* query, IXMLDOMNode** result);
HRESULT SelectAll(const NodeRef& ref, const char16_t* query, IXMLDOMNodeList** result);
HRESULT AppendChild(const NodeRef& ref, IXMLDOMNode* child, IXMLDOMNode** result);
HRESULT FindChildElement(const NodeRef& ref, const char16_t* tagName, const char16_t* attributeName,
                         const char16_t* value, IXMLDOMElement** found);

// A node object: `Interface` is IXMLDOMNode or an interface derived from it.
// Every node also offers the child lookup of this build.
template <class Interface>
class NodeObject : public DomObject<Interface>, public IXMLDOMChildLookup, public NodeHolder {
 public:
  explicit NodeObject(NodeRef where) { ref = std::move(where); }

  // One object, one reference count, whichever interface is asked.
  HRESULT QueryInterface(REFIID riid, void** object) override {
    return DomObject<Interface>::QueryInterface(riid, object);
  }
  ULONG AddRef() override { return DomObject<Interface>::AddRef(); }
  ULONG Release() override { return DomObject<Interface>::Release(); }

  HRESULT get_nodeName(std::u16string* name) override { return NodeName(ref, name); }
  HRESULT get_nodeType(DOMNodeType* type) override { return NodeType(ref, type); }
  HRESULT get_xml(std::u16string* xml) override { return NodeXml(ref, xml); }
  HRESULT selectSingleNode(const char16_t* query, IXMLDOMNode** result) override {
    return SelectSingle(ref, query, result);
  }
  HRESULT selectNodes(const char16_t* query, IXMLDOMNodeList** result) override {
    return SelectAll(ref, query, result);
  }
  HRESULT appendChild(IXMLDOMNode* child, IXMLDOMNode** result) override { return AppendChild(ref, child, result); }
  HRESULT findChildElement(const char16_t* tagName, const char16_t* attributeName, const char16_t* value,
                           IXMLDOMElement** found) override {
    return FindChildElement(ref, tagName, attributeName, value, found);
  }

 protected:
  // IUnknown, IXMLDOMNode and the child lookup; kinds with more interfaces add theirs.
  IUnknown* interfaceFor(REFIID riid) override {
    if (riid == IID_IUnknown || riid == IID_IXMLDOMNode) return static_cast<IXMLDOMNode*>(this);
    if (riid == IID_IXMLDOMChildLookup) return static_cast<IXMLDOMChildLookup*>(this);
    return nullptr;
  }
};

}  // namespace com_internal
