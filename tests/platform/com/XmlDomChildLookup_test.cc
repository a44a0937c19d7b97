// The DOM's child lookup against the walk that an MSXML caller writes
// (selectNodes, each item asked for IXMLDOMElement, its attribute read), on
// random documents read from files and changed through the DOM between
// lookups, with failing queries, and with malformed bytes, U+FFFD and lone
// surrogates in the texts.
#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <string>

#include "com/ComApartment.h"
#include "com/XmlDom.h"
#include "com/XmlDom_testing.h"
#include "support/TempFolder.h"
#include "support/u16.h"

namespace {

// Children of the root; % stands for the attributes. Only the E elements may be found.
const char* const kChildren[] = {"<E%/>",    "<E%/>",    "<E%/>",        "<e%/>",
                                 "<?E pi?>", "<!--E-->", "<X><E%/></X>", "<F%>t</F>"};
// Texts of attribute `a` as the file holds them: UTF-8, escaped, malformed.
const char* const kStoredTexts[] = {
    "v", "V", "\xC3\xA4", "\xF0\x9F\x98\x80", "&amp;", "", "x\xEF\xBF\xBD", "x\xFF", "x\xED\xA0\x80"};
// Texts looked for; null finds only a missing attribute.
const char16_t* const kWanted[] = {u"v", u"V", u"\u00E4", u"\U0001F600", u"&", u"", u"x\uFFFD", u"x\xD800", nullptr};

// The id of the element found, "-" for none, or the failure.
struct Outcome {
  HRESULT hr;
  std::u16string id;
  bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << std::hex << outcome.hr << std::dec << " id " << U8(outcome.id);
}

std::u16string IdOf(IXMLDOMElement* element) {
  _variant_t id;
  element->getAttribute(u"id", &id);
  return id.bstrVal;
}

Outcome PlainFind(IXMLDOMNode* parent, const char16_t* wanted) {
  IXMLDOMNodeListPtr list;
  if (HRESULT hr = parent->selectNodes(u"E", &list); FAILED(hr)) return {hr, u""};
  LONG length = 0;
  list->get_length(&length);
  for (LONG i = 0; i < length; ++i) {
    IXMLDOMNodePtr node;
    list->get_item(i, &node);
    IXMLDOMElementPtr element;
    HRESULT hr = element.QueryFrom(node.GetInterfacePtr());
    if (hr == E_NOINTERFACE) continue;
    if (FAILED(hr)) return {hr, u""};
    _variant_t text;
    element->getAttribute(u"a", &text);
    if (text.vt == VT_NULL || (wanted && text.bstrVal == wanted)) return {S_OK, IdOf(element.GetInterfacePtr())};
  }
  return {S_FALSE, u"-"};
}

Outcome LookupFind(IXMLDOMChildLookup* lookup, const char16_t* wanted) {
  IXMLDOMElementPtr found;
  HRESULT hr = lookup->findChildElement(u"E", u"a", wanted, &found);
  if (FAILED(hr)) return {hr, u""};
  return {hr, found ? IdOf(found.GetInterfacePtr()) : u"-"};
}

class XmlDomChildLookup : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))); }
  void TearDown() override {
    com_testing::resetDomFailures();
    CoUninitialize();
  }

  IXMLDOMElementPtr randomRoot() {
    std::string xml = "<R>";
    for (int id = 0, count = static_cast<int>(mRng() % 12); id < count; ++id) {
      std::string child = kChildren[mRng() % std::size(kChildren)];
      std::string attributes = " id=\"" + std::to_string(id) + "\"";
      if (mRng() % 12 != 0) attributes += std::string(" a=\"") + kStoredTexts[mRng() % std::size(kStoredTexts)] + "\"";
      if (std::size_t at = child.find('%'); at != std::string::npos) child.replace(at, 1, attributes);
      xml += child + "\n";
    }
    mFolder.makeFile("doc.xml", xml + "</R>");
    IXMLDOMDocument2Ptr document;
    CoCreateInstance(CLSID_DOMDocument60, nullptr, CLSCTX_ALL, IID_IXMLDOMDocument2,
                     reinterpret_cast<void**>(&document));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    document->load(_variant_t(mFolder.windows("doc.xml").c_str()), &loaded);
    EXPECT_EQ(loaded, VARIANT_TRUE) << xml;
    IXMLDOMElementPtr root;
    document->get_documentElement(&root);
    return root;
  }
  // Sets `a` of a random child that is an element, or moves the child to the end.
  void randomEdit(IXMLDOMElement* root) {
    IXMLDOMNodeListPtr children;
    root->selectNodes(u"node()", &children);
    IXMLDOMNodePtr child;
    children->get_item(static_cast<LONG>(mRng() % 12), &child);
    IXMLDOMElementPtr element;
    if (child && element.QueryFrom(child.GetInterfacePtr()) == S_OK && mRng() % 2 == 0)
      element->setAttribute(u"a", _variant_t(kWanted[mRng() % 6]));
    else if (child)
      root->appendChild(child.GetInterfacePtr(), nullptr);
  }
  // Arms the same failure before each of the two forms: a query of the
  // n-th element passed over or failing, or the selection failing.
  void arm(unsigned failure, int n) {
    if (failure == 1) com_testing::failNextQueryInterface(IID_IXMLDOMElement, E_NOINTERFACE, n);
    if (failure == 2) com_testing::failNextQueryInterface(IID_IXMLDOMElement, E_FAIL, n);
    if (failure == 3) com_testing::failNextSelectNodes(E_OUTOFMEMORY);
  }

  std::mt19937 mRng{18};
  TempFolder mFolder;
};

TEST_F(XmlDomChildLookup, FindsWhatTheWalkOverTheListFinds) {
  for (int round = 0; round < 150; ++round) {
    IXMLDOMElementPtr root = randomRoot();
    ASSERT_TRUE(root);
    IXMLDOMChildLookupPtr lookup;
    ASSERT_EQ(lookup.QueryFrom(root.GetInterfacePtr()), S_OK);
    for (int step = 0; step < 12; ++step) {
      const char16_t* wanted = kWanted[mRng() % std::size(kWanted)];
      const unsigned failure = mRng() % 4 == 0 ? 1 + mRng() % 3 : 0;
      const int n = static_cast<int>(mRng() % 4);
      arm(failure, n);
      const Outcome plain = PlainFind(root.GetInterfacePtr(), wanted);
      com_testing::resetDomFailures();
      arm(failure, n);
      ASSERT_EQ(LookupFind(lookup.GetInterfacePtr(), wanted), plain)
          << "round " << round << ", step " << step << ", wanted " << (wanted ? U8(wanted) : "null") << ", failure "
          << failure << "/" << n;
      com_testing::resetDomFailures();
      randomEdit(root.GetInterfacePtr());
    }
  }
  IXMLDOMChildLookupPtr lookup;
  lookup.QueryFrom(randomRoot().GetInterfacePtr());
  IXMLDOMElementPtr found;
  EXPECT_EQ(lookup->findChildElement(u"R/E", u"a", u"v", &found), E_INVALIDARG) << "a path, not a name";
}

}  // namespace
