// The XML DOM stand-in on real files: loading, saving beside and renaming
// over, keeping what the library doesn't touch, and building nodes.
#include "com/XmlDom.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#include <tuple>

#include "com/ComApartment.h"
#include "com/ComError.h"
#include "com/XmlDom_testing.h"
#include "support/TempFolder.h"
#include "support/u16.h"

namespace {

constexpr char kSample[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<!-- kept comment -->\n"
    "<Settings Version=\"3\">\n"
    "  <?app-hint keep?>\n"
    "  <Setting Name=\"A\"><Property Name=\"p\" Value=\"1\" Extra=\"x\"/></Setting>\n"
    "  <Unknown><Deep attr=\"&amp;&lt;\">text</Deep></Unknown>\n"
    "  <Setting Name=\"B\"/>\n"
    "</Settings>\n";

IXMLDOMDocument2Ptr newDocument() {
  IXMLDOMDocument2Ptr document;
  CoCreateInstance(CLSID_DOMDocument60, nullptr, CLSCTX_ALL, IID_IXMLDOMDocument2, reinterpret_cast<void**>(&document));
  return document;
}

class XmlDom : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    mDocument = newDocument();
    ASSERT_TRUE(mDocument);
  }
  void TearDown() override {
    mDocument = nullptr;
    com_testing::resetDomFailures();
    CoUninitialize();
  }

  _variant_t pathOf(const std::string& name) const { return _variant_t(mFolder.windows(name).c_str()); }

  // Loads file `name`; the status must agree with the flag.
  bool load(const std::string& name) {
    VARIANT_BOOL ok = VARIANT_TRUE;
    HRESULT hr = mDocument->load(pathOf(name), &ok);
    EXPECT_EQ(hr, ok == VARIANT_TRUE ? S_OK : S_FALSE);
    return ok == VARIANT_TRUE;
  }
  // Writes `content` to file `name` and loads it.
  bool loadText(const std::string& name, const std::string& content) {
    mFolder.makeFile(name, content);
    return load(name);
  }
  std::u16string xml(IXMLDOMNode* node) const {
    std::u16string text;
    EXPECT_EQ(node->get_xml(&text), S_OK);
    return text;
  }
  IXMLDOMElementPtr root() const {
    IXMLDOMElementPtr element;
    mDocument->get_documentElement(&element);
    return element;
  }
  IXMLDOMNodePtr select(IXMLDOMNode* from, const char16_t* query) const {
    IXMLDOMNodePtr node;
    from->selectSingleNode(query, &node);
    return node;
  }

  TempFolder mFolder;
  IXMLDOMDocument2Ptr mDocument;
};

TEST_F(XmlDom, LoadAcceptsOnlyWellFormedDocuments) {
  // content: nullptr: no file
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"missing file", nullptr, false},
      {"two root elements", "<a/><b/>", false},
      {"text beside the root", "<a/>stray", false},
      {"document type", "<!DOCTYPE a><a/>", false},
      {"plain document", "<a/>", true},
  };
  for (const auto& [name, content, loads] : cases) {
    SCOPED_TRACE(name);
    std::filesystem::remove(mFolder.posix("f.xml"));
    if (content) mFolder.makeFile("f.xml", content);
    EXPECT_EQ(load("f.xml"), loads);
    EXPECT_EQ(static_cast<bool>(root()), loads) << "a failed load leaves an empty document";
  }
}

TEST_F(XmlDom, LoadRefusesWhatIsNotAPathAndEmptiesOnInjectedFailure) {
  VARIANT_BOOL ok = VARIANT_TRUE;
  EXPECT_EQ(mDocument->load(_variant_t(5), &ok), E_INVALIDARG);
  EXPECT_EQ(ok, VARIANT_FALSE);
  ASSERT_TRUE(loadText("f.xml", "<a/>"));
  com_testing::failNextLoad(E_ACCESSDENIED);
  EXPECT_EQ(mDocument->load(pathOf("f.xml"), &ok), E_ACCESSDENIED);
  EXPECT_FALSE(root());
}

TEST_F(XmlDom, SaveKeepsWhatTheDocumentHoldsBesideTheChanges) {
  ASSERT_TRUE(loadText("s.xml", kSample));
  std::u16string before = xml(mDocument.GetInterfacePtr());
  IXMLDOMElementPtr property;
  property.QueryFrom(select(mDocument.GetInterfacePtr(), u"Settings/Setting/Property").GetInterfacePtr());
  ASSERT_TRUE(property);
  ASSERT_EQ(property->setAttribute(u"Value", _variant_t(u"2")), S_OK);
  ASSERT_EQ(mDocument->save(pathOf("s.xml")), S_OK);

  std::string saved = mFolder.read("s.xml");
  for (const char* kept : {"<?xml version=\"1.0\" encoding=\"utf-8\"?>", "<!-- kept comment -->", "<?app-hint keep?>",
                           "Version=\"3\"", "<Deep attr=\"&amp;&lt;\">text</Deep>",
                           "<Property Name=\"p\" Value=\"2\" Extra=\"x\" />", "<Setting Name=\"B\" />"}) {
    EXPECT_NE(saved.find(kept), std::string::npos) << kept << " missing from:\n" << saved;
  }
  ASSERT_TRUE(load("s.xml"));
  std::u16string after = xml(mDocument.GetInterfacePtr());
  std::size_t at = before.find(u"Value=\"1\"");
  ASSERT_NE(at, std::u16string::npos);
  EXPECT_EQ(after, before.replace(at, 9, u"Value=\"2\"")) << "only the changed value differs";
}

TEST_F(XmlDom, SaveKeepsTheFileEncoding) {
  // "<a b="é"/>" in UTF-16 little endian with its byte order mark.
  std::string utf16 = "\xFF\xFE";
  for (char16_t unit : std::u16string(u"<a b=\"\u00E9\"/>")) {
    utf16 += static_cast<char>(unit & 0xFF);
    utf16 += static_cast<char>(unit >> 8);
  }
  ASSERT_TRUE(loadText("u.xml", utf16));
  ASSERT_EQ(mDocument->save(pathOf("u.xml")), S_OK);
  EXPECT_EQ(mFolder.read("u.xml").substr(0, 4), std::string("\xFF\xFE<\0", 4));
  ASSERT_TRUE(load("u.xml"));
  EXPECT_EQ(xml(root().GetInterfacePtr()), u"<a b=\"\u00E9\"/>");
}

TEST_F(XmlDom, FailedSaveLeavesTheFileAsItWasWithErrorInformation) {
  ASSERT_TRUE(loadText("f.xml", "<a/>"));
  std::filesystem::create_directory(mFolder.posix("dir.xml"));
  const std::tuple<const char*, std::string, HRESULT> cases[] = {
      {"missing folder", "none/f.xml", HRESULT_FROM_WIN32(3)},
      {"a folder in the way", "dir.xml", E_ACCESSDENIED},
  };
  for (const auto& [name, target, expected] : cases) {
    SCOPED_TRACE(name);
    EXPECT_EQ(mDocument->save(pathOf(target)), expected);
    IErrorInfo* info = nullptr;
    ASSERT_EQ(GetErrorInfo(0, &info), S_OK);
    IErrorInfoPtr owned(info, false);
    std::u16string description;
    owned->GetDescription(&description);
    EXPECT_NE(description.find(u"Can't save"), std::u16string::npos) << U8(description);
  }
  EXPECT_TRUE(std::filesystem::is_directory(mFolder.posix("dir.xml")));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(mFolder.posix()), {}), 2) << "nothing left beside";
  EXPECT_EQ(mDocument->save(_variant_t(1)), E_INVALIDARG);
}

// A writer killed at any moment of a save leaves the old or the new file
// whole, never a part of one.
TEST_F(XmlDom, KilledSaveNeverLeavesAHalfWrittenFile) {
  std::string big = "<Settings>";
  for (int i = 0; i < 20000; ++i) big += "<Property Name=\"n" + std::to_string(i) + "\" Value=\"old\"/>";
  big += "</Settings>";
  mFolder.makeFile("k.xml", big);
  for (int round = 0; round < 6; ++round) {
    SCOPED_TRACE(round);
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      IXMLDOMDocument2Ptr document = newDocument();
      VARIANT_BOOL ok;
      document->load(pathOf("k.xml"), &ok);
      for (;;) document->save(pathOf("k.xml"));
    }
    ::usleep(static_cast<useconds_t>(20000 + 15000 * round));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ASSERT_TRUE(load("k.xml"));
    LONG count = 0;
    IXMLDOMNodeListPtr properties;
    ASSERT_EQ(root()->selectNodes(u"Property", &properties), S_OK);
    properties->get_length(&count);
    EXPECT_EQ(count, 20000);
  }
}

TEST_F(XmlDom, SelectionFollowsDocumentOrderAndReportsBadQueries) {
  ASSERT_TRUE(loadText("s.xml", kSample));
  IXMLDOMNodeListPtr settings;
  ASSERT_EQ(root()->selectNodes(u"Setting", &settings), S_OK);
  LONG length = 0;
  settings->get_length(&length);
  ASSERT_EQ(length, 2);
  IXMLDOMNodePtr second;
  EXPECT_EQ(settings->get_item(1, &second), S_OK);
  EXPECT_EQ(xml(second.GetInterfacePtr()), u"<Setting Name=\"B\"/>");
  EXPECT_EQ(settings->get_item(2, &second), S_FALSE);
  EXPECT_FALSE(second);

  IXMLDOMNodePtr none;
  EXPECT_EQ(root()->selectSingleNode(u"Setting[", &none), E_FAIL);
  IErrorInfo* info = nullptr;
  EXPECT_EQ(GetErrorInfo(0, &info), S_OK);
  IErrorInfoPtr owned(info, false);
  ISupportErrorInfoPtr support;
  ASSERT_EQ(support.QueryFrom(root().GetInterfacePtr()), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IXMLDOMElement), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IXMLDOMDocument), S_FALSE);
}

TEST_F(XmlDom, AttributesReadAsStringsOrNull) {
  ASSERT_TRUE(loadText("s.xml", kSample));
  IXMLDOMElementPtr element = root();
  _variant_t value;
  EXPECT_EQ(element->getAttribute(u"Version", &value), S_OK);
  EXPECT_EQ(value.vt, VT_BSTR);
  EXPECT_EQ(value.bstrVal, u"3");
  EXPECT_EQ(element->getAttribute(u"version", &value), S_FALSE) << "names compare with case";
  EXPECT_EQ(value.vt, VT_NULL);
  VARIANT nullValue;
  nullValue.vt = VT_NULL;
  EXPECT_EQ(element->setAttribute(u"x", nullValue), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(element->setAttribute(u"1x", _variant_t(u"v")), E_FAIL);
  EXPECT_EQ(element->setAttribute(u"n", _variant_t(42)), S_OK);
  const std::u16string start = u"<Settings Version=\"3\" n=\"42\">";
  EXPECT_EQ(xml(element.GetInterfacePtr()).substr(0, start.size()), start);
}

TEST_F(XmlDom, BuiltNodesJoinTheTreeInOrder) {
  ASSERT_TRUE(loadText("b.xml", "<Settings><Setting Name=\"A\"/></Settings>"));
  IXMLDOMNodePtr node;
  ASSERT_EQ(mDocument->createNode(_variant_t(NODE_ELEMENT, VT_INT), u"Property", u"", &node), S_OK);
  IXMLDOMElementPtr property;
  ASSERT_EQ(property.QueryFrom(node.GetInterfacePtr()), S_OK);
  for (const char16_t* name : {u"Name", u"Value"}) {
    IXMLDOMAttributePtr attribute;
    ASSERT_EQ(mDocument->createAttribute(name, &attribute), S_OK);
    ASSERT_EQ(attribute->put_value(_variant_t(name)), S_OK);
    ASSERT_EQ(property->setAttributeNode(attribute.GetInterfacePtr(), nullptr), S_OK);
    // Now on the element: a second element can't take it, and changing it changes the element.
    IXMLDOMElementPtr other;
    mDocument->createElement(u"Other", &other);
    EXPECT_EQ(other->setAttributeNode(attribute.GetInterfacePtr(), nullptr), E_FAIL);
    attribute->put_value(_variant_t(std::u16string(name).append(u"!").c_str()));
  }
  IXMLDOMNodePtr setting = select(root().GetInterfacePtr(), u"Setting");
  ASSERT_EQ(setting->appendChild(node.GetInterfacePtr(), nullptr), S_OK);
  // The appended node is the node in the tree now.
  ASSERT_EQ(property->setAttribute(u"Late", _variant_t(u"1")), S_OK);
  EXPECT_EQ(
      xml(root().GetInterfacePtr()),
      u"<Settings><Setting Name=\"A\"><Property Name=\"Name!\" Value=\"Value!\" Late=\"1\"/></Setting></Settings>");

  EXPECT_EQ(node->appendChild(setting.GetInterfacePtr(), nullptr), E_FAIL) << "below itself";
  IXMLDOMElementPtr second;
  mDocument->createElement(u"Second", &second);
  EXPECT_EQ(mDocument->appendChild(second.GetInterfacePtr(), nullptr), E_FAIL) << "a second root";
  IXMLDOMDocument2Ptr otherDocument = newDocument();
  IXMLDOMElementPtr foreign;
  otherDocument->createElement(u"Foreign", &foreign);
  EXPECT_EQ(setting->appendChild(foreign.GetInterfacePtr(), nullptr), E_INVALIDARG);
}

TEST_F(XmlDom, ReplacedAttributeComesBackDetachedAndKeepsItsPlace) {
  ASSERT_TRUE(loadText("b.xml", "<a x=\"1\" y=\"2\"/>"));
  IXMLDOMAttributePtr attribute;
  mDocument->createAttribute(u"x", &attribute);
  attribute->put_value(_variant_t(u"9"));
  IXMLDOMAttributePtr old;
  ASSERT_EQ(root()->setAttributeNode(attribute.GetInterfacePtr(), &old), S_OK);
  ASSERT_TRUE(old);
  _variant_t value;
  old->get_value(&value);
  EXPECT_EQ(value.bstrVal, u"1");
  EXPECT_EQ(xml(root().GetInterfacePtr()), u"<a x=\"9\" y=\"2\"/>");
}

TEST_F(XmlDom, NodesOutliveAReload) {
  ASSERT_TRUE(loadText("one.xml", "<one k=\"v\"/>"));
  IXMLDOMElementPtr first = root();
  ASSERT_TRUE(loadText("two.xml", "<two/>"));
  EXPECT_EQ(xml(first.GetInterfacePtr()), u"<one k=\"v\"/>");
  EXPECT_EQ(mDocument->appendChild(first.GetInterfacePtr(), nullptr), E_INVALIDARG) << "an old tree's node";
}

}  // namespace
