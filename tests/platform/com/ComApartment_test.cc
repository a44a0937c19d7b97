// COM start-up per thread, object creation and interface queries.
#include "com/ComApartment.h"

#include <gtest/gtest.h>

#include <thread>
#include <tuple>

#include "com/ComError.h"
#include "com/XmlDom.h"

namespace {

HRESULT createDocument(IXMLDOMDocument2Ptr& document, DWORD context = CLSCTX_ALL) {
  return CoCreateInstance(CLSID_DOMDocument60, nullptr, context, IID_IXMLDOMDocument2,
                          reinterpret_cast<void**>(&document));
}

TEST(ComApartment, StartsCountPerThreadAndCreationNeedsThem) {
  IXMLDOMDocument2Ptr document;
  EXPECT_EQ(createDocument(document), CO_E_NOTINITIALIZED);
  EXPECT_FALSE(document);

  ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
  EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
  EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
  CoUninitialize();
  EXPECT_EQ(createDocument(document), S_OK) << "one start is still open";
  EXPECT_TRUE(document);

  // Another thread has its own state: it has not started COM.
  HRESULT onOtherThread = S_OK;
  std::thread([&] {
    IXMLDOMDocument2Ptr other;
    onOtherThread = createDocument(other);
  }).join();
  EXPECT_EQ(onOtherThread, CO_E_NOTINITIALIZED);

  CoUninitialize();
  EXPECT_EQ(createDocument(document), CO_E_NOTINITIALIZED);
  EXPECT_FALSE(document) << "the out-argument is cleared on failure";
}

class ComCreation : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))); }
  void TearDown() override { CoUninitialize(); }
};

TEST_F(ComCreation, RefusesWhatThePlatformRefuses) {
  static constexpr CLSID kOtherClass{0x12345678, 0x1, 0x2, {1, 2, 3, 4, 5, 6, 7, 8}};
  IUnknownPtr unknown;
  auto create = [&](REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid) {
    return CoCreateInstance(clsid, outer, context, iid, reinterpret_cast<void**>(&unknown));
  };
  EXPECT_EQ(create(kOtherClass, nullptr, CLSCTX_ALL, IID_IUnknown), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(create(CLSID_DOMDocument60, nullptr, CLSCTX_LOCAL_SERVER, IID_IUnknown), REGDB_E_CLASSNOTREG);
  ASSERT_EQ(create(CLSID_DOMDocument60, nullptr, CLSCTX_ALL, IID_IUnknown), S_OK);
  IUnknownPtr outer = unknown;
  EXPECT_EQ(create(CLSID_DOMDocument60, outer.GetInterfacePtr(), CLSCTX_ALL, IID_IUnknown), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(create(CLSID_DOMDocument60, nullptr, CLSCTX_ALL, IID_IXMLDOMNodeList), E_NOINTERFACE);
  EXPECT_FALSE(unknown);
  EXPECT_EQ(CoCreateInstance(CLSID_DOMDocument60, nullptr, CLSCTX_ALL, IID_IUnknown, nullptr), E_POINTER);
  EXPECT_EQ(OleRun(outer.GetInterfacePtr()), S_OK);
  EXPECT_EQ(OleRun(nullptr), E_INVALIDARG);
}

TEST_F(ComCreation, DocumentAnswersQueriesById) {
  IXMLDOMDocument2Ptr document;
  ASSERT_EQ(createDocument(document), S_OK);
  const std::tuple<const char*, const IID&, HRESULT> queries[] = {
      {"IXMLDOMNode", IID_IXMLDOMNode, S_OK},
      {"IXMLDOMDocument", IID_IXMLDOMDocument, S_OK},
      {"IXMLDOMElement", IID_IXMLDOMElement, E_NOINTERFACE},
  };
  for (const auto& [name, iid, expected] : queries) {
    SCOPED_TRACE(name);
    void* object = reinterpret_cast<void*>(1);
    EXPECT_EQ(document->QueryInterface(iid, &object), expected);
    EXPECT_EQ(object != nullptr, expected == S_OK);
    if (object) static_cast<IUnknown*>(object)->Release();
  }
}

}  // namespace
