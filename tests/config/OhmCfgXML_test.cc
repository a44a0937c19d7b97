// The settings file App.config on real files in a folder of this program's
// own, named through the suite's global value before the first GetInstance.
#include "ohmutils/config/OhmCfgXML.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <tuple>

#include "com/ComApartment.h"
#include "com/ComApartment_testing.h"
#include "com/ComError.h"
#include "com/Variant_testing.h"
#include "com/XmlDom_testing.h"
#include "support/TempFolder.h"
#include "support/u16.h"
#include "zd/app/GblPm.h"

namespace {

using ConfigurationXML::SettingType;

// The code of the _com_error that `call` raises, S_OK when it raises none; its description into `description`.
HRESULT raisedBy(const std::function<void()>& call, std::u16string* description = nullptr) {
  try {
    call();
  } catch (const _com_error& error) {
    if (description) *description = error.Description();
    return error.Error();
  }
  return S_OK;
}

class OhmCfgXMLTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    GblPm_SetGblValue(u"GBL_wd_DocSetBase", (sFolder.windows() + u"\\").c_str());
    OhmCfgXML::GetInstance();
  }
  void SetUp() override {
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    std::filesystem::remove(sFolder.posix("App.config"));
  }
  void TearDown() override {
    dropDocument();
    com_testing::resetDomFailures();
    CoUninitialize();
  }

  // Brings the singleton to "no document" through a creation that fails.
  void dropDocument() {
    com_testing::failNextCreateInstance(E_FAIL);
    EXPECT_FALSE(mConfig.loadCfgXML());
  }
  void write(const std::string& xml) { sFolder.makeFile("App.config", xml); }
  void loadFile(const std::string& xml) {
    write(xml);
    ASSERT_TRUE(mConfig.loadCfgXML()) << xml;
  }
  // The file's root element as compact XML, read by a document of its own.
  std::u16string fileXml() {
    IXMLDOMDocument2Ptr document;
    CoCreateInstance(CLSID_DOMDocument60, nullptr, CLSCTX_ALL, IID_IXMLDOMDocument2,
                     reinterpret_cast<void**>(&document));
    VARIANT_BOOL ok = VARIANT_FALSE;
    document->load(_variant_t(sFolder.windows("App.config").c_str()), &ok);
    IXMLDOMElementPtr root;
    document->get_documentElement(&root);
    std::u16string xml;
    if (root) root->get_xml(&xml);
    return xml;
  }
  std::u16string get(int type, const char16_t* name) {
    return mConfig.getSetting(static_cast<SettingType>(type), name).str();
  }
  void set(const char16_t* value, int type, const char16_t* name) {
    EXPECT_TRUE(mConfig.setSetting(CString(value), static_cast<SettingType>(type), name));
  }

  static inline TempFolder sFolder;  // the program folder, for the whole suite
  OhmCfgXML& mConfig = OhmCfgXML::GetInstance();
};

// Setting types 0 to 5 by their names in the file; other types read nothing, not even the unnamed Setting.
TEST_F(OhmCfgXMLTest, EachTypeReadsItsOwnSetting) {
  const char* names[] = {"Connector_Imperial", "Connector_Metric", "DefaultBrowsePath",      "SchSortOrder",
                         "TermSchSortOrder",   "AuditSettings",    "DefaultBlockBrowsePath", ""};
  std::string xml = "<Settings>";
  for (const char* name : names)
    xml += std::string("<Setting Name=\"") + name + "\"><Property Name=\"p\" Value=\"" + name + "!\"/></Setting>";
  loadFile(xml + "</Settings>");
  for (int type = -1; type <= 6; ++type) {
    SCOPED_TRACE(type);
    EXPECT_EQ(get(type, u"p"), type < 0 || type == 6 ? u"" : U16(names[type]) + u"!");
  }
}

TEST_F(OhmCfgXMLTest, PropertiesMatchWholeNamesWithCaseAndTheFirstWins) {
  loadFile(
      "<Settings>"
      "<Setting Name=\"AuditSettings\">"
      "<Property Name=\"Key\" Value=\"upper\"/><Property Name=\"key\" Value=\"lower\"/>"
      "<Property Name=\"Key\" Value=\"second\"/><Property Name=\"NoValue\"/>"
      "</Setting>"
      "<Setting Name=\"AuditSettings\"><Property Name=\"Other\" Value=\"hidden\"/></Setting>"
      "</Settings>");
  const std::pair<const char16_t*, const char16_t*> expected[] = {
      {u"Key", u"upper"}, {u"key", u"lower"}, {u"Ke", u""}, {u"NoValue", u""}, {u"Other", u""},
  };
  for (const auto& [name, value] : expected) {
    SCOPED_TRACE(U8(name));
    EXPECT_EQ(get(SettingType::AuditSettings, name), value);
  }
  set(u"changed", SettingType::AuditSettings, u"Key");
  set(u"new", SettingType::AuditSettings, u"Other");
  ASSERT_TRUE(mConfig.saveCfgXML());
  EXPECT_EQ(fileXml(),
            u"<Settings><Setting Name=\"AuditSettings\">"
            u"<Property Name=\"Key\" Value=\"changed\"/><Property Name=\"key\" Value=\"lower\"/>"
            u"<Property Name=\"Key\" Value=\"second\"/><Property Name=\"NoValue\"/>"
            u"<Property Name=\"Other\" Value=\"new\"/></Setting>"
            u"<Setting Name=\"AuditSettings\"><Property Name=\"Other\" Value=\"hidden\"/></Setting></Settings>");
}

// Two setSetting calls on a file that lacks the Setting: "v1" into property
// "p", then "v2" into a second property; then "p" is read back under the
// type and the file saved.
TEST_F(OhmCfgXMLTest, MissingSettingIsAddedAtTheEndWithNameThenValue) {
  const std::tuple<const char*, int, const char16_t*, const char16_t*, const char16_t*> cases[] = {
      {"new Setting, two properties", SettingType::TermSchSortOrder, u"q", u"v1",
       u"<Settings><Setting Name=\"Custom\"/><Setting Name=\"TermSchSortOrder\">"
       u"<Property Name=\"p\" Value=\"v1\"/><Property Name=\"q\" Value=\"v2\"/></Setting></Settings>"},
      {"browse path reads back under its type", SettingType::DefaultBrowsePath, u"p", u"v2",
       u"<Settings><Setting Name=\"Custom\"/><Setting Name=\"DefaultBrowsePath\">"
       u"<Property Name=\"p\" Value=\"v2\"/></Setting></Settings>"},
      {"unknown type: an unnamed Setting each time", 7, u"p", u"",
       u"<Settings><Setting Name=\"Custom\"/><Setting Name=\"\"><Property Name=\"p\" Value=\"v1\"/></Setting>"
       u"<Setting Name=\"\"><Property Name=\"p\" Value=\"v2\"/></Setting></Settings>"},
  };
  for (const auto& [name, type, secondProperty, readBack, savedXml] : cases) {
    SCOPED_TRACE(name);
    loadFile("<Settings><Setting Name=\"Custom\"/></Settings>");
    set(u"v1", type, u"p");
    set(u"v2", type, secondProperty);
    EXPECT_EQ(get(type, u"p"), readBack);
    ASSERT_TRUE(mConfig.saveCfgXML());
    EXPECT_EQ(fileXml(), savedXml);
  }
}

TEST_F(OhmCfgXMLTest, ChangesReachTheFileOnlyThroughSaveAndSurviveAReload) {
  const std::string original =
      "<?xml version=\"1.0\"?>\n<!-- suite settings -->\n<Settings>\n  <Unknown a=\"1\"/>\n"
      "  <Setting Name=\"AuditSettings\"><Property Name=\"p\" Value=\"1\"/></Setting>\n</Settings>\n";
  loadFile(original);
  set(u"2", SettingType::AuditSettings, u"p");
  EXPECT_EQ(sFolder.read("App.config"), original) << "setSetting alone leaves the file";
  ASSERT_TRUE(mConfig.loadCfgXML());
  EXPECT_EQ(get(SettingType::AuditSettings, u"p"), u"1") << "a load forgets what wasn't saved";

  set(u"3", SettingType::AuditSettings, u"p");
  ASSERT_TRUE(mConfig.saveCfgXML());
  ASSERT_TRUE(mConfig.loadCfgXML());
  EXPECT_EQ(get(SettingType::AuditSettings, u"p"), u"3");
}

TEST_F(OhmCfgXMLTest, WithoutAUsableDocumentEverythingRaisesInvalidPointer) {
  const std::tuple<const char*, std::function<void()>> states[] = {
      {"never loaded", [] {}},
      {"wrong root held", [&] { write("<Other/>"), mConfig.loadCfgXML(); }},
  };
  for (const auto& [name, reach] : states) {
    SCOPED_TRACE(name);
    dropDocument();
    reach();
    EXPECT_EQ(raisedBy([&] { get(SettingType::SchSortOrder, u"p"); }), E_POINTER);
    EXPECT_EQ(raisedBy([&] { set(u"v", SettingType::SchSortOrder, u"p"); }), E_POINTER);
    EXPECT_EQ(raisedBy([&] { mConfig.setDefaultNode(SettingType::SchSortOrder); }), E_POINTER);
  }
  dropDocument();
  EXPECT_EQ(raisedBy([&] { mConfig.saveCfgXML(); }), E_POINTER);
  EXPECT_EQ(raisedBy([&] { mConfig.setDefaultSetting(CString(u"v"), nullptr, u"p"); }), E_POINTER);
  loadFile("<Settings/>");
  EXPECT_EQ(raisedBy([&] { mConfig.setDefaultSetting(CString(u"v"), nullptr, u"p"); }), E_POINTER) << "no Setting node";
  ASSERT_TRUE(mConfig.saveCfgXML());
  EXPECT_EQ(raisedBy([&] { mConfig.saveCfgXML(); }), E_POINTER) << "a second save in a row";
}

TEST_F(OhmCfgXMLTest, ElementsLookedAtNeedAName) {
  const std::tuple<const char*, const char*, HRESULT> cases[] = {
      {"Setting before the match", "<Setting/><Setting Name=\"SchSortOrder\"/>", DISP_E_TYPEMISMATCH},
      {"Setting behind the match", "<Setting Name=\"SchSortOrder\"/><Setting/>", S_OK},
      {"Property before the match",
       "<Setting Name=\"SchSortOrder\"><Property Value=\"1\"/><Property Name=\"p\"/></Setting>", DISP_E_TYPEMISMATCH},
      {"Property of another Setting", "<Setting Name=\"Audit\"><Property/></Setting>", S_OK},
  };
  for (const auto& [name, xml, expected] : cases) {
    SCOPED_TRACE(name);
    loadFile(std::string("<Settings>") + xml + "</Settings>");
    EXPECT_EQ(raisedBy([&] { get(SettingType::SchSortOrder, u"p"); }), expected);
    EXPECT_EQ(raisedBy([&] { set(u"v", SettingType::SchSortOrder, u"p"); }), expected);
  }
}

TEST_F(OhmCfgXMLTest, FailingDomCallsRaiseTheirCodeAndErrorInformation) {
  loadFile("<Settings><Setting Name=\"SchSortOrder\"><Property Name=\"p\" Value=\"1\"/></Setting></Settings>");
  com_testing::failNextSelectNodes(E_FAIL);
  std::u16string description;
  EXPECT_EQ(raisedBy([&] { get(SettingType::SchSortOrder, u"p"); }, &description), E_FAIL);
  EXPECT_EQ(description, u"selectNodes failed (injected).");

  set(u"2", SettingType::SchSortOrder, u"p");
  com_testing::failNextSave(E_ACCESSDENIED);
  EXPECT_EQ(raisedBy([&] { mConfig.saveCfgXML(); }), E_ACCESSDENIED);
  EXPECT_EQ(get(SettingType::SchSortOrder, u"p"), u"2") << "the document stays after a failed save";
  EXPECT_TRUE(mConfig.saveCfgXML());

  loadFile("<Settings/>");
  com_testing::failNextStringVariant();
  EXPECT_EQ(raisedBy([&] { set(u"v", SettingType::SchSortOrder, u"p"); }), E_OUTOFMEMORY);
}

TEST_F(OhmCfgXMLTest, InterfaceQueriesPassOverOnlyOnNoInterface) {
  const std::string xml =
      "<Settings><Setting Name=\"SchSortOrder\"><Property Name=\"p\" Value=\"first\"/></Setting>"
      "<Setting Name=\"SchSortOrder\"><Property Name=\"p\" Value=\"second\"/></Setting></Settings>";
  loadFile(xml);
  // The first query is for the Settings element, the second for the first Setting.
  com_testing::failNextQueryInterface(IID_IXMLDOMElement, E_NOINTERFACE, 1);
  EXPECT_EQ(get(SettingType::SchSortOrder, u"p"), u"second") << "a node without the interface is passed over";
  com_testing::failNextQueryInterface(IID_IXMLDOMElement, E_FAIL, 1);
  EXPECT_EQ(raisedBy([&] { get(SettingType::SchSortOrder, u"p"); }), E_FAIL);

  for (int passFirst : {0, 1}) {  // the lookup of the Setting, then that of the Property
    com_testing::failNextQueryInterface(IID_IXMLDOMChildLookup, E_NOINTERFACE, passFirst);
    EXPECT_EQ(get(SettingType::SchSortOrder, u"p"), u"first") << "a DOM without the child lookup is walked as a list";
    com_testing::failNextQueryInterface(IID_IXMLDOMChildLookup, E_UNEXPECTED, passFirst);
    EXPECT_EQ(raisedBy([&] { get(SettingType::SchSortOrder, u"p"); }), E_UNEXPECTED);
  }

  com_testing::failNextQueryInterface(IID_IXMLDOMElement, E_NOINTERFACE);
  EXPECT_FALSE(mConfig.loadCfgXML()) << "a Settings node that isn't an element counts as none";

  loadFile(xml);
  com_testing::failNextQueryInterface(IID_IXMLDOMNode, E_NOINTERFACE);
  EXPECT_EQ(raisedBy([&] { set(u"v", SettingType::SchSortOrder, u"new"); }), E_POINTER);
  com_testing::failNextQueryInterface(IID_IXMLDOMNode, E_UNEXPECTED);
  EXPECT_EQ(raisedBy([&] { set(u"v", SettingType::SchSortOrder, u"new"); }), E_UNEXPECTED);
}

TEST_F(OhmCfgXMLTest, LoadFailsWhenTheDocumentObjectCantBeMade) {
  write("<Settings/>");
  bool loadedWithoutCom = true;
  std::thread([&] { loadedWithoutCom = mConfig.loadCfgXML(); }).join();
  EXPECT_FALSE(loadedWithoutCom) << "a thread that did not start COM";
  com_testing::failNextOleRun(E_FAIL);
  EXPECT_FALSE(mConfig.loadCfgXML());
  EXPECT_EQ(raisedBy([&] { get(SettingType::SchSortOrder, u"p"); }), E_POINTER) << "no document is held";
  EXPECT_TRUE(mConfig.loadCfgXML());
}

TEST_F(OhmCfgXMLTest, PathIsTakenOnceFromTheGlobalValue) {
  TempFolder elsewhere;
  elsewhere.makeFile("App.config",
                     "<Settings><Setting Name=\"AuditSettings\"><Property Name=\"p\" Value=\"x\"/>"
                     "</Setting></Settings>");
  GblPm_SetGblValue(u"GBL_wd_DocSetBase", (elsewhere.windows() + u"\\").c_str());
  loadFile("<Settings/>");
  EXPECT_EQ(get(SettingType::AuditSettings, u"p"), u"") << "still the first folder's file";
  GblPm_SetGblValue(u"GBL_wd_DocSetBase", (sFolder.windows() + u"\\").c_str());
}

}  // namespace
