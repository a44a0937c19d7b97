// The umbrella header must compile on its own, as the first include.
#include "ohmutils/OhmUtils.h"

#include <gtest/gtest.h>

TEST(UmbrellaHeader, CompilesAlone) {
  OhmNoRxUtilsSettingOverride settings;
  EXPECT_TRUE(settings.getSettingMap().empty());
}
