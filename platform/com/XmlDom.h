// The XML DOM of MSXML 6.0, as far as the library uses it: the document, its
// nodes, elements and attributes, node lists from XPath selections, loading
// from and saving to a file. A thin layer over pugixml.
//
// Ownership: every interface pointer handed out through an out-argument
// carries one reference for the caller. A node keeps the tree it lives in
// alive, so nodes stay usable after their document loads another file (they
// then belong to the old, detached tree). Nodes made by createElement,
// createAttribute or createNode stand apart until appendChild or
// setAttributeNode puts them into the tree; the node passed in then refers to
// its place in the tree.
//
// Strings that the platform hands out as BSTR come out as std::u16string here;
// strings passed in are null-terminated UTF-16.
//
// Files: load and save take the path as a string variant, in Windows form,
// translated to the file system at the moment they touch it. A load keeps
// comments, processing instructions and the XML declaration; a save writes
// them back with the elements and attributes the document holds, indented with
// tabs, in the encoding the file was read in (UTF-8 for a new document). A
// save writes a new file beside the target and renames it over the target, so
// the target holds either the old or the new content, never a part.
//
// Failures leave error information on the thread (com/ComError.h); every
// interface here says so through ISupportErrorInfo.
//
// Thread safety: a document and its nodes belong to one thread at a time.
#pragma once

#include <string>

#include "OhmPlatformExport.h"
#include "com/ComPtr.h"
#include "com/Variant.h"

OHM_PLATFORM_API_BEGIN

inline constexpr CLSID CLSID_DOMDocument60{
    0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};
inline constexpr IID IID_IXMLDOMNode{0x2933BF80, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
inline constexpr IID IID_IXMLDOMDocument{0x2933BF81, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
inline constexpr IID IID_IXMLDOMNodeList{0x2933BF82, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
inline constexpr IID IID_IXMLDOMAttribute{0x2933BF85, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
inline constexpr IID IID_IXMLDOMElement{0x2933BF86, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
inline constexpr IID IID_IXMLDOMDocument2{0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

// This build's own interface id (see IXMLDOMChildLookup).
inline constexpr IID IID_IXMLDOMChildLookup{
    0x5E0A2C71, 0x3B9D, 0x4F27, {0x9C, 0x41, 0x6D, 0x0B, 0x83, 0x1E, 0x52, 0xA4}};

enum DOMNodeType {
  NODE_INVALID = 0,
  NODE_ELEMENT = 1,
  NODE_ATTRIBUTE = 2,
  NODE_TEXT = 3,
  NODE_CDATA_SECTION = 4,
  NODE_PROCESSING_INSTRUCTION = 7,
  NODE_COMMENT = 8,
  NODE_DOCUMENT = 9,
  NODE_DOCUMENT_TYPE = 10,
};

struct IXMLDOMNodeList;
struct IXMLDOMElement;

struct IXMLDOMNode : IUnknown {
  static constexpr const IID& iid = IID_IXMLDOMNode;
  // S_OK and the node's name ("#comment", "#document", ... for unnamed kinds); E_POINTER for null.
  virtual HRESULT get_nodeName(std::u16string* name) = 0;
  // S_OK and the node's kind; E_POINTER for null.
  virtual HRESULT get_nodeType(DOMNodeType* type) = 0;
  // S_OK and the node as XML text; E_POINTER for null.
  virtual HRESULT get_xml(std::u16string* xml) = 0;
  // S_OK and the first node in document order that the XPath `query` selects
  // from this node; S_FALSE and null when it selects nothing; E_FAIL for a
  // query that doesn't compile; E_POINTER for a null argument.
  virtual HRESULT selectSingleNode(const char16_t* query, IXMLDOMNode** result) = 0;
  // S_OK and the list, in document order, of what `query` selects (may be
  // empty); E_FAIL for a query that doesn't compile; E_POINTER for a null argument.
  virtual HRESULT selectNodes(const char16_t* query, IXMLDOMNodeList** result) = 0;
  // Appends `child` as the last child of this node, moving it from where it
  // was; S_OK and, if `result` isn't null, the child. E_INVALIDARG for a
  // child of another document or an old tree of this one; E_FAIL for an
  // attribute, a document, this node or one of its ancestors, or a node kind
  // this node can't hold; E_POINTER for a null child.
  virtual HRESULT appendChild(IXMLDOMNode* child, IXMLDOMNode** result) = 0;
};

struct IXMLDOMNodeList : IUnknown {
  static constexpr const IID& iid = IID_IXMLDOMNodeList;
  // S_OK and the number of nodes; E_POINTER for null.
  virtual HRESULT get_length(LONG* length) = 0;
  // S_OK and node `index` (from 0); S_FALSE and null for an index outside
  // the list; E_POINTER for null.
  virtual HRESULT get_item(LONG index, IXMLDOMNode** node) = 0;
};

// Not an interface of MSXML: this build's DOM offers it on every node, for
// callers that look up one child by an attribute among many, which MSXML
// callers do with selectNodes and a walk over the list. Ask for it with
// QueryInterface and walk the list where a DOM doesn't offer it.
struct IXMLDOMChildLookup : IUnknown {
  static constexpr const IID& iid = IID_IXMLDOMChildLookup;
  // Among this node's child elements named `tagName`, in document order (what
  // selectNodes(tagName) lists for a plain name), the first whose attribute
  // `attributeName` is missing or reads `value`, compared whole and unit by
  // unit as UTF-16 text; a null `value` finds only a missing attribute.
  // S_OK and that element; S_FALSE and null when no child is such;
  // E_INVALIDARG for a `tagName` that isn't an XML name; E_POINTER for a null
  // name or out-argument. It makes no node object and copies no text for the
  // children it passes over, so it sees every change made to the tree.
  // For the test seams (com/XmlDom_testing.h) it is a selectNodes, and a
  // caller's query for IXMLDOMElement of each child of that name it looks at:
  // a child whose query fails with E_NOINTERFACE is passed over, another
  // failure ends the search with its status and no error information.
  virtual HRESULT findChildElement(const char16_t* tagName, const char16_t* attributeName, const char16_t* value,
                                   IXMLDOMElement** found) = 0;
};

struct IXMLDOMAttribute : IXMLDOMNode {
  static constexpr const IID& iid = IID_IXMLDOMAttribute;
  // S_OK and the value as a string variant; E_POINTER for null.
  virtual HRESULT get_value(VARIANT* value) = 0;
  // S_OK, the value converted to text; the conversion's failure
  // (DISP_E_TYPEMISMATCH for a null variant) leaves it as it was.
  virtual HRESULT put_value(VARIANT value) = 0;
};

struct IXMLDOMElement : IXMLDOMNode {
  static constexpr const IID& iid = IID_IXMLDOMElement;
  // S_OK and the element's name; E_POINTER for null.
  virtual HRESULT get_tagName(std::u16string* name) = 0;
  // S_OK and the attribute's value as a string variant; S_FALSE and a null
  // variant when the element has no attribute of that name; E_POINTER for null.
  virtual HRESULT getAttribute(const char16_t* name, VARIANT* value) = 0;
  // S_OK, the attribute set to the value as text (a new attribute goes
  // behind the others); E_FAIL for a name that isn't an XML name; the
  // conversion's failure for a value that has no text.
  virtual HRESULT setAttribute(const char16_t* name, VARIANT value) = 0;
  // Puts the attribute node on this element: S_OK, and the attribute that it
  // replaced (same name) in *old as a detached node, or null. The new one takes
  // the old one's place; otherwise it goes behind the others. E_FAIL for an
  // attribute that stands on an element already; E_INVALIDARG for one of
  // another document; E_POINTER for a null attribute. `old` may be null.
  virtual HRESULT setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** old) = 0;
};

struct IXMLDOMDocument : IXMLDOMNode {
  static constexpr const IID& iid = IID_IXMLDOMDocument;
  // S_OK and the root element; S_FALSE and null for an empty document; E_POINTER for null.
  virtual HRESULT get_documentElement(IXMLDOMElement** root) = 0;
  // S_OK and a new element standing apart; E_FAIL for a name that isn't an XML name.
  virtual HRESULT createElement(const char16_t* tagName, IXMLDOMElement** element) = 0;
  // S_OK and a new attribute with an empty value standing apart; E_FAIL for a bad name.
  virtual HRESULT createAttribute(const char16_t* name, IXMLDOMAttribute** attribute) = 0;
  // S_OK and a new node of kind `type` (an integer variant: NODE_ELEMENT,
  // NODE_ATTRIBUTE or NODE_COMMENT). E_INVALIDARG for another variant type or
  // kind; E_NOTIMPL for a non-empty namespace, which this build doesn't keep;
  // E_FAIL for a bad name.
  virtual HRESULT createNode(VARIANT type, const char16_t* name, const char16_t* namespaceURI, IXMLDOMNode** node) = 0;
  // Replaces the document's content with the file at the path in `source` (a
  // string variant). S_OK and VARIANT_TRUE; S_FALSE and VARIANT_FALSE, with an
  // empty document, when the file is missing, unreadable, not well-formed
  // (one root element, nothing but white space as text at the top), or has a
  // document type declaration (which MSXML 6.0 refuses unless told
  // otherwise). E_INVALIDARG for a variant that isn't a string.
  virtual HRESULT load(VARIANT source, VARIANT_BOOL* isSuccessful) = 0;
  // Writes the document to the path in `destination` (a string variant),
  // replacing the file. S_OK; E_ACCESSDENIED for a folder or file that can't be
  // written; HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND) for a folder that isn't
  // there or a path that doesn't map; E_INVALIDARG for a variant that isn't a
  // string; E_FAIL for another failure of the file system. On failure the
  // file is as it was.
  virtual HRESULT save(VARIANT destination) = 0;
};

struct IXMLDOMDocument2 : IXMLDOMDocument {
  static constexpr const IID& iid = IID_IXMLDOMDocument2;
};

using IXMLDOMNodePtr = _com_ptr_t<IXMLDOMNode>;
using IXMLDOMNodeListPtr = _com_ptr_t<IXMLDOMNodeList>;
using IXMLDOMChildLookupPtr = _com_ptr_t<IXMLDOMChildLookup>;
using IXMLDOMAttributePtr = _com_ptr_t<IXMLDOMAttribute>;
using IXMLDOMElementPtr = _com_ptr_t<IXMLDOMElement>;
using IXMLDOMDocumentPtr = _com_ptr_t<IXMLDOMDocument>;
using IXMLDOMDocument2Ptr = _com_ptr_t<IXMLDOMDocument2>;

OHM_PLATFORM_API_END
