// The DOM's child lookup against the walk that an MSXML caller writes
// (selectNodes, each item asked for IXMLDOMElement, its attribute read), on
// random documents read from files, changed through the DOM between
// lookups, with failing queries, and with malformed bytes, U+FFFD and lone
// surrogates in the texts.
#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "com/ComApartment.h"
#include "com/XmlDom.h"
#include "com/XmlDom_testing.h"
#include "support/TempFolder.h"
#include "support/u16.h"

namespace {

// Texts of attribute `a` as the file holds them: UTF-8, escaped, malformed.
const char* const kStoredTexts[] = {
    "v", "V", "v ", "\xC3\xA4", "\xF0\x9F\x98\x80", "&amp;", "", "x\xEF\xBF\xBD", "x\xFF", "x\xED\xA0\x80"};
// Texts looked for; null finds only a missing attribute.
const char16_t* const kWanted[] = {u"v", u"V",       u"\u00E4",  u"\U0001F600", u"&",
                                   u"",  u"x\uFFFD", u"x\xD800", u"absent",     nullptr};

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

Outcome PlainFind(IXMLDOMNode* parent, const char16_t* tag, const char16_t* wanted) {
  IXMLDOMNodeListPtr list;
  if (HRESULT hr = parent->selectNodes(tag, &list); FAILED(hr)) return {hr, u""};
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

Outcome LookupFind(IXMLDOMChildLookup* lookup, const char16_t* tag, const char16_t* wanted) {
  IXMLDOMElementPtr found;
  HRESULT hr = lookup->findChildElement(tag, u"a", wanted, &found);
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

  // One child of the root: mostly an element E, else something no lookup of E may find.
  std::string randomChild(int id) {
    const std::string a =
        mRng() % 12 == 0 ? "" : std::string(" a=\"") + kStoredTexts[mRng() % std::size(kStoredTexts)] + "\"";
    const std::string ids = " id=\"" + std::to_string(id) + "\"";
    switch (mRng() % 10) {
      case 0:
        return "<e" + a + ids + "/>";
      case 1:
        return "<?E pi?>";
      case 2:
        return "<!--E-->";
      case 3:
        return "<X><E" + a + ids + "/></X>";
      case 4:
        return "<F" + a + ids + ">t</F>";
      default:
        return "<E" + a + ids + "/>";
    }
  }
  IXMLDOMDocument2Ptr randomDocument() {
    std::string xml = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<R>";
    for (int id = 0, count = static_cast<int>(mRng() % 12); id < count; ++id) xml += randomChild(id) + "\n ";
    mFolder.makeFile("doc.xml", xml + "</R>");
    IXMLDOMDocument2Ptr document;
    CoCreateInstance(CLSID_DOMDocument60, nullptr, CLSCTX_ALL, IID_IXMLDOMDocument2,
                     reinterpret_cast<void**>(&document));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    document->load(_variant_t(mFolder.windows("doc.xml").c_str()), &loaded);
    EXPECT_EQ(loaded, VARIANT_TRUE) << xml;
    return document;
  }
  // Sets `a` of a random E, moves a random child to the end, or appends a new E.
  void randomEdit(IXMLDOMDocument2* document, IXMLDOMElement* root, int id) {
    IXMLDOMNodeListPtr children;
    root->selectNodes(u"node()", &children);
    LONG length = 0;
    children->get_length(&length);
    IXMLDOMNodePtr child;
    if (length > 0) children->get_item(static_cast<LONG>(mRng() % static_cast<unsigned>(length)), &child);
    IXMLDOMElementPtr element;
    if (child) element.QueryFrom(child.GetInterfacePtr());
    const char16_t* text = kWanted[mRng() % 6];
    if (element && mRng() % 2 == 0) {
      element->setAttribute(u"a", _variant_t(text));
    } else if (child && mRng() % 2 == 0) {
      root->appendChild(child.GetInterfacePtr(), nullptr);
    } else {
      IXMLDOMElementPtr added;
      document->createElement(u"E", &added);
      added->setAttribute(u"a", _variant_t(text));
      added->setAttribute(u"id", _variant_t(U16("n" + std::to_string(id)).c_str()));
      root->appendChild(added.GetInterfacePtr(), nullptr);
    }
  }
  // Arms the same random failure before each of the two forms, or none.
  void armRandomFailure(unsigned choice, int passFirst) {
    if (choice == 1) com_testing::failNextQueryInterface(IID_IXMLDOMElement, E_NOINTERFACE, passFirst);
    if (choice == 2) com_testing::failNextQueryInterface(IID_IXMLDOMElement, E_FAIL, passFirst);
    if (choice == 3) com_testing::failNextSelectNodes(E_OUTOFMEMORY);
  }

  std::mt19937 mRng{18};
  TempFolder mFolder;
};

TEST_F(XmlDomChildLookup, FindsWhatTheWalkOverTheListFinds) {
  for (int round = 0; round < 150; ++round) {
    IXMLDOMDocument2Ptr document = randomDocument();
    IXMLDOMElementPtr root;
    document->get_documentElement(&root);
    ASSERT_TRUE(root);
    for (int step = 0; step < 12; ++step) {
      const bool fromDocument = mRng() % 4 == 0;
      IXMLDOMNode* parent =
          fromDocument ? static_cast<IXMLDOMNode*>(document.GetInterfacePtr()) : root.GetInterfacePtr();
      const char16_t* tag = fromDocument ? u"R" : (mRng() % 5 == 0 ? u"e" : u"E");
      const char16_t* wanted = kWanted[mRng() % std::size(kWanted)];
      const unsigned failure = mRng() % 4 == 0 ? 1 + mRng() % 3 : 0;
      const int passFirst = static_cast<int>(mRng() % 4);
      IXMLDOMChildLookupPtr lookup;
      ASSERT_EQ(lookup.QueryFrom(parent), S_OK);
      armRandomFailure(failure, passFirst);
      const Outcome plain = PlainFind(parent, tag, wanted);
      com_testing::resetDomFailures();
      armRandomFailure(failure, passFirst);
      const Outcome fast = LookupFind(lookup.GetInterfacePtr(), tag, wanted);
      com_testing::resetDomFailures();
      ASSERT_EQ(fast, plain) << "round " << round << ", step " << step << ", tag " << U8(tag) << ", wanted "
                             << (wanted ? U8(wanted) : "null") << ", failure " << failure << "/" << passFirst;
      randomEdit(document.GetInterfacePtr(), root.GetInterfacePtr(), round * 100 + step);
    }
  }
}

TEST_F(XmlDomChildLookup, RefusesWhatIsntAPlainName) {
  IXMLDOMDocument2Ptr document;
  CoCreateInstance(CLSID_DOMDocument60, nullptr, CLSCTX_ALL, IID_IXMLDOMDocument2, reinterpret_cast<void**>(&document));
  IXMLDOMChildLookupPtr lookup;
  ASSERT_EQ(lookup.QueryFrom(document.GetInterfacePtr()), S_OK);
  IXMLDOMElementPtr found;
  EXPECT_EQ(lookup->findChildElement(u"R/E", u"a", u"v", &found), E_INVALIDARG);
  EXPECT_EQ(lookup->findChildElement(nullptr, u"a", u"v", &found), E_POINTER);
  EXPECT_EQ(lookup->findChildElement(u"R", u"a", u"v", &found), S_FALSE) << "an empty document";
  EXPECT_FALSE(found);
}

}  // namespace
