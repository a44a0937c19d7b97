#include "zd/dxf/DxfDocument.h"

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "support/TestName.h"
#include "support/u16.h"
#include "win/fs/PathMapping.h"
#include "zd/app/ZdDocManager.h"
#include "zd/db/ZdDbDatabase.h"

namespace {

namespace fs = std::filesystem;

const fs::path kFixture = fs::path(OHM_FIXTURES_DIR) / "dxf" / "layouts_crlf.dxf";

struct OpenCase {
  const char* what;
  std::u16string name;  // as given to openDxfDocument
  bool makeCurrent;
  Zeda::ErrorStatus status;
};

void PrintTo(const OpenCase& c, std::ostream* os) { *os << c.what; }

std::vector<OpenCase> openCases() {
  const std::string full = fs::absolute(kFixture).lexically_normal().string();
  const std::string relative = fs::relative(full, fs::current_path()).string();
  return {
      {"full POSIX name, made current", U16(full), true, Zeda::eOk},
      {"Windows form with drive, not made current", u"Z:" + PosixPathToWindows(full), false, Zeda::eOk},
      {"not a drawing", U16(fs::path(OHM_FIXTURES_DIR).string()), true, Zeda::eFileAccessErr},
      {"unmapped drive", u"Q:\\nowhere\\a.dxf", true, Zeda::eFileNotFound},
  };
}

class DxfDocumentTest : public ::testing::TestWithParam<OpenCase> {
 protected:
  void SetUp() override {
    mEarlier = zdDocManagerPtr()->addDocument(u"\\earlier.dxf", std::make_shared<ZdDbDatabase>());
  }
  void TearDown() override {
    zdDocManagerPtr()->closeDocument(mOpened);
    zdDocManagerPtr()->closeDocument(mEarlier);
  }
  ZdApDocument* mEarlier = nullptr;
  ZdApDocument* mOpened = nullptr;
};

TEST_P(DxfDocumentTest, OpensTheDrawingAsADocument) {
  const OpenCase& c = GetParam();
  ZdApDocManager* manager = zdDocManagerPtr();
  const int count = manager->documentCount();
  EXPECT_EQ(openDxfDocument(c.name.c_str(), c.makeCurrent, mOpened), c.status);
  if (c.status != Zeda::eOk) {
    EXPECT_EQ(mOpened, nullptr);
    EXPECT_EQ(manager->documentCount(), count);
    EXPECT_EQ(manager->curDocument(), mEarlier);
    return;
  }
  ASSERT_NE(mOpened, nullptr);
  EXPECT_EQ(manager->documentCount(), count + 1);
  EXPECT_EQ(manager->curDocument(), c.makeCurrent ? mOpened : mEarlier);
  EXPECT_EQ(std::u16string(mOpened->fileName()),
            PosixPathToWindows(fs::absolute(kFixture).lexically_normal().string()));
  ASSERT_NE(mOpened->database(), nullptr);
  EXPECT_EQ(mOpened->database()->dwgVersion(), u"AC1018");
  EXPECT_EQ(mOpened->database()->blockTableRecordIds().size(), 3u);  // model, paper and the second paper space
}

INSTANTIATE_TEST_SUITE_P(Cases, DxfDocumentTest, ::testing::ValuesIn(openCases()),
                         [](const auto& test) { return TestName(test.param.what); });

TEST(DxfDocumentNullTest, RefusesANullName) {
  ZdApDocument* document = reinterpret_cast<ZdApDocument*>(&document);
  const int count = zdDocManagerPtr()->documentCount();
  EXPECT_EQ(openDxfDocument(nullptr, true, document), Zeda::eInvalidInput);
  EXPECT_EQ(document, nullptr);
  EXPECT_EQ(zdDocManagerPtr()->documentCount(), count);
}

}  // namespace
