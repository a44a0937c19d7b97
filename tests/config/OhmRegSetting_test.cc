// The suite's registry settings below the host's product root, on a real
// store: what reads as false, what is made on the way, several processes
// writing at once and a writer that dies midway.
#include "ohmutils/config/OhmRegSetting.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>

#include "RegistryStoreFixture.h"
#include "support/ChildProcess.h"
#include "support/u16.h"
#include "win/WinError.h"
#include "win/registry/Registry.h"

namespace {

constexpr const char16_t* kSettings = u"Software\\Ohm\\Zeda\\R1\\Settings";

class OhmRegSettingTest : public RegistryStoreFixture {
 protected:
  // The text of `name` in `section`; "<false>" when OhmGetRegSetting says false.
  static std::u16string Get(const char16_t* section, const char16_t* name) {
    CString value;
    return OhmGetRegSetting(section, name, value) ? value.str() : u"<false>";
  }
  static bool KeyExists(const std::u16string& path) {
    HKEY key = nullptr;
    const LONG status = RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key);
    if (key) RegCloseKey(key);
    return status == ERROR_SUCCESS;
  }
  // A writer process on this test's store, started and ready for "go".
  std::unique_ptr<Child> Writer(const std::string& tag, int count) {
    auto writer = std::make_unique<Child>(OHM_REGISTRY_WRITER, std::vector<std::string>{tag, std::to_string(count)},
                                          std::vector<std::string>{"OHM_REGISTRY_STORE=" + mStorePath});
    EXPECT_TRUE(writer->started());
    EXPECT_EQ(writer->readLine(), "ready");
    return writer;
  }
};

TEST_F(OhmRegSettingTest, AWrittenSettingReadsBackFromItsSectionKey) {
  CString untouched(u"as given");
  EXPECT_FALSE(OhmGetRegSetting(u"Paths", u"Last", untouched)) << "never written";
  EXPECT_EQ(untouched, u"as given");
  EXPECT_FALSE(KeyExists(kSettings));
  EXPECT_TRUE(OhmSetRegSetting(u"Paths", u"Last", u"C:\\work"));
  EXPECT_TRUE(KeyExists(std::u16string(kSettings) + u"\\Paths")) << "made on the way";
  EXPECT_EQ(Get(u"Paths", u"Last"), u"C:\\work");
  EXPECT_TRUE(OhmSetRegSetting(u"Paths", u"Last", u""));
  EXPECT_EQ(Get(u"Paths", u"Last"), u"") << "an empty text is a value";
  EXPECT_EQ(Get(u"Paths", u"Other"), u"<false>");
}

TEST_F(OhmRegSettingTest, ANullArgumentGivesFalseWithoutTouchingTheRegistry) {
  CString value(u"kept");
  EXPECT_FALSE(OhmSetRegSetting(nullptr, u"n", u"v"));
  EXPECT_FALSE(OhmSetRegSetting(u"s", nullptr, u"v"));
  EXPECT_FALSE(OhmSetRegSetting(u"s", u"n", nullptr));
  EXPECT_FALSE(OhmGetRegSetting(nullptr, u"n", value));
  EXPECT_FALSE(OhmGetRegSetting(u"s", nullptr, value));
  EXPECT_EQ(value, u"kept");
  EXPECT_FALSE(std::filesystem::exists(mStorePath)) << "the store wasn't even opened";
}

TEST_F(OhmRegSettingTest, AStoreThatIsNotADatabaseReadsAndWritesAsFalse) {
  const std::string garbage(4096, '#');
  std::ofstream(mStorePath) << garbage;
  win_testing::useRegistryStore(mStorePath);
  EXPECT_FALSE(OhmSetRegSetting(u"S", u"n", u"v"));
  EXPECT_EQ(Get(u"S", u"n"), u"<false>");
  EXPECT_TRUE(ReadFile(mStorePath) == garbage) << "the file is left alone";
}

TEST_F(OhmRegSettingTest, FourProcessesWritingUnderOneKeyAtOnceLoseNothing) {
  constexpr int kCount = 150;
  const std::string tags[] = {"a", "b", "c", "d"};
  std::vector<std::unique_ptr<Child>> writers;
  for (const std::string& tag : tags) writers.push_back(Writer(tag, kCount));
  ASSERT_FALSE(HasFailure());
  for (auto& writer : writers) writer->send("go");
  for (auto& writer : writers) EXPECT_EQ(writer->readLine(), "written " + std::to_string(kCount + 1));
  for (auto& writer : writers) {
    writer->send("quit");
    EXPECT_EQ(writer->wait(), 0);
  }
  int missing = 0;
  for (const std::string& tag : tags)
    for (int n = 0; n < kCount; ++n)
      missing += Get(u"Contest", U16(tag + "_" + std::to_string(n)).c_str()) != U16(tag + ":" + std::to_string(n));
  EXPECT_EQ(missing, 0);
  const std::u16string last = Get(u"Contest", u"last");
  EXPECT_TRUE(last == u"a" || last == u"b" || last == u"c" || last == u"d") << U8(last);
}

TEST_F(OhmRegSettingTest, AWriterThatDiesKeepsWhatItWroteAndTheStoreStaysUsable) {
  auto writer = Writer("dead", 40);
  ASSERT_FALSE(HasFailure());
  writer->send("go");
  EXPECT_EQ(writer->readLine(), "written 41");
  writer->send("die");
  EXPECT_EQ(writer->wait(), 9);
  EXPECT_EQ(Get(u"Contest", u"dead_39"), u"dead:39");
  EXPECT_EQ(Get(u"Contest", u"last"), u"dead");
  EXPECT_TRUE(OhmSetRegSetting(u"Contest", u"after", u"alive"));
  EXPECT_EQ(Get(u"Contest", u"after"), u"alive");
}

}  // namespace
