// The DOMDocument60 object: creating nodes, loading a file and saving one by
// writing beside it and renaming over it.
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "com/XmlDom_internal.h"
#include "win/Utf8.h"
#include "win/WinError.h"
#include "win/fs/FileReplace.h"
#include "win/fs/PathMapping.h"

namespace com_internal {
namespace {

// MSXML keeps comments, processing instructions and the declaration; the
// document type is parsed so that it can be refused.
// Text at the top level is parsed (as a fragment) so that it can be refused too.
constexpr unsigned kParseFlags = pugi::parse_default | pugi::parse_declaration | pugi::parse_comments | pugi::parse_pi |
                                 pugi::parse_doctype | pugi::parse_fragment;

struct StringWriter : pugi::xml_writer {
  std::string bytes;
  void write(const void* data, std::size_t size) override { bytes.append(static_cast<const char*>(data), size); }
};

// One root element, no text, no document type at the top level.
bool IsWellFormedDocument(const pugi::xml_document& xml) {
  int elements = 0;
  for (pugi::xml_node node : xml.children()) {
    pugi::xml_node_type type = node.type();
    if (type == pugi::node_pcdata || type == pugi::node_cdata || type == pugi::node_doctype) return false;
    if (type == pugi::node_element) ++elements;
  }
  return elements == 1;
}

std::string Serialize(const DomTree& tree) {
  unsigned flags = pugi::format_indent | pugi::format_no_declaration;
  if (tree.encoding != pugi::encoding_utf8) flags |= pugi::format_write_bom;
  StringWriter writer;
  tree.xml.save(writer, "\t", flags, tree.encoding);
  return writer.bytes;
}

HRESULT FromErrno(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND);
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
      return E_ACCESSDENIED;
    default:
      return E_FAIL;
  }
}

std::u16string Describe(const char* what, const std::string& path, const char* why) {
  return Utf8ToUtf16(std::string(what) + " \"" + path + "\": " + why);
}

class Document final : public NodeObject<IXMLDOMDocument2> {
 public:
  Document() : NodeObject(NodeRef{}) { replaceTree(); }

  HRESULT get_documentElement(IXMLDOMElement** root) override;
  HRESULT createElement(const char16_t* tagName, IXMLDOMElement** element) override;
  HRESULT createAttribute(const char16_t* name, IXMLDOMAttribute** attribute) override;
  HRESULT createNode(VARIANT type, const char16_t* name, const char16_t* namespaceURI, IXMLDOMNode** node) override;
  HRESULT load(VARIANT source, VARIANT_BOOL* isSuccessful) override;
  HRESULT save(VARIANT destination) override;

 protected:
  IUnknown* interfaceFor(REFIID riid) override {
    if (riid == IID_IXMLDOMDocument || riid == IID_IXMLDOMDocument2) return static_cast<IXMLDOMDocument2*>(this);
    return NodeObject::interfaceFor(riid);
  }

 private:
  // Starts a new, empty content; nodes of the old one keep it alive.
  void replaceTree() {
    auto tree = std::make_shared<DomTree>(this, false);
    ref = NodeRef{tree, tree->xml, {}};
  }
  HRESULT loadFile(const std::string& path);
  // A node of kind `kind` named `name`, standing apart in a tree of its own.
  NodeRef makeDetached(pugi::xml_node_type kind, const std::string& name);
};

HRESULT Document::get_documentElement(IXMLDOMElement** root) {
  if (!root) return E_POINTER;
  *root = nullptr;
  pugi::xml_node element = ref.tree->xml.document_element();
  if (!element) return S_FALSE;
  *root = WrapElement(NodeRef{ref.tree, element, {}});
  return S_OK;
}

NodeRef Document::makeDetached(pugi::xml_node_type kind, const std::string& name) {
  auto tree = std::make_shared<DomTree>(this, true);
  pugi::xml_node node = tree->xml.append_child(kind);
  if (kind == pugi::node_element) node.set_name(name.c_str());
  return NodeRef{tree, node, {}};
}

HRESULT Document::createElement(const char16_t* tagName, IXMLDOMElement** element) {
  if (!tagName || !element) return E_POINTER;
  *element = nullptr;
  if (!IsXmlName(tagName)) return Fail(E_FAIL, IID_IXMLDOMDocument, u"An element name must be an XML name.");
  *element = WrapElement(makeDetached(pugi::node_element, Utf16ToUtf8(tagName)));
  return S_OK;
}

HRESULT Document::createAttribute(const char16_t* name, IXMLDOMAttribute** attribute) {
  if (!name || !attribute) return E_POINTER;
  *attribute = nullptr;
  if (!IsXmlName(name)) return Fail(E_FAIL, IID_IXMLDOMDocument, u"An attribute name must be an XML name.");
  *attribute = WrapAttribute(MakeDetachedAttribute(this, Utf16ToUtf8(name).c_str()));
  return S_OK;
}

HRESULT Document::createNode(VARIANT type, const char16_t* name, const char16_t* namespaceURI, IXMLDOMNode** node) {
  if (!node) return E_POINTER;
  *node = nullptr;
  LONG kind = type.vt == VT_INT ? type.intVal : type.vt == VT_I4 ? type.lVal : -1;
  if (kind != NODE_ELEMENT && kind != NODE_ATTRIBUTE && kind != NODE_COMMENT)
    return Fail(E_INVALIDARG, IID_IXMLDOMDocument, u"This node type can't be created here.");
  if (namespaceURI && *namespaceURI)
    return Fail(E_NOTIMPL, IID_IXMLDOMDocument, u"Namespaces are not kept by this document.");
  if (kind == NODE_COMMENT) {
    *node = WrapNode(makeDetached(pugi::node_comment, ""));
    return S_OK;
  }
  if (!IsXmlName(name)) return Fail(E_FAIL, IID_IXMLDOMDocument, u"A node name must be an XML name.");
  std::string narrow = Utf16ToUtf8(name);
  *node = WrapNode(kind == NODE_ELEMENT ? makeDetached(pugi::node_element, narrow)
                                        : MakeDetachedAttribute(this, narrow.c_str()));
  return S_OK;
}

// S_OK, or S_FALSE with the document emptied. The reason isn't kept: MSXML
// gives it through parseError, not as error information.
HRESULT Document::loadFile(const std::string& path) {
  DomTree& tree = *ref.tree;
  pugi::xml_parse_result result = tree.xml.load_file(path.c_str(), kParseFlags, pugi::encoding_auto);
  if (result && IsWellFormedDocument(tree.xml)) {
    tree.encoding = result.encoding;
    return S_OK;
  }
  tree.xml.reset();
  return S_FALSE;
}

HRESULT Document::load(VARIANT source, VARIANT_BOOL* isSuccessful) {
  if (!isSuccessful) return E_POINTER;
  *isSuccessful = VARIANT_FALSE;
  if (source.vt != VT_BSTR) return Fail(E_INVALIDARG, IID_IXMLDOMDocument, u"load takes a path.");
  replaceTree();
  if (HRESULT injected = TakeInjectedFailure(Injected::load); FAILED(injected))
    return Fail(injected, IID_IXMLDOMDocument, u"load failed (injected).");
  std::optional<std::string> path = WindowsPathToPosix(source.bstrVal);
  HRESULT hr = path ? loadFile(*path) : S_FALSE;
  if (hr == S_OK) *isSuccessful = VARIANT_TRUE;
  return hr;
}

HRESULT Document::save(VARIANT destination) {
  if (destination.vt != VT_BSTR) return Fail(E_INVALIDARG, IID_IXMLDOMDocument, u"save takes a path.");
  if (HRESULT injected = TakeInjectedFailure(Injected::save); FAILED(injected))
    return Fail(injected, IID_IXMLDOMDocument, u"save failed (injected).");
  std::optional<std::string> path = WindowsPathToPosix(destination.bstrVal);
  if (!path) return Fail(HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND), IID_IXMLDOMDocument, u"The path has no place here.");
  int error = ReplaceFileContents(*path, Serialize(*ref.tree));
  if (error == 0) return S_OK;
  return Fail(FromErrno(error), IID_IXMLDOMDocument, Describe("Can't save", *path, std::strerror(error)));
}

}  // namespace

HRESULT CreateDomDocument(REFIID riid, void** object) {
  IUnknownPtr document(static_cast<IXMLDOMDocument2*>(new Document), false);
  return document->QueryInterface(riid, object);
}

}  // namespace com_internal
