// The variables that a Mac keeps.

#include "platform/services/ProcessStart.hpp"

#include "platform/testing/Environment.hpp"

#include <gmock/gmock.h>

namespace platform {
namespace {

using ::testing::ElementsAre;

TEST(ReducedEnvironmentOnAMac, DropsVariablesThatOnlyLinuxNeeds) {
    EXPECT_THAT(
        testing::environmentAfter(reduceEnvironment,
                                  {"DISPLAY=:0", "XAUTHORITY=/Users/sam/.Xauthority",
                                   "GNUSTEP_CONFIG_FILE=/etc/x", "ASAN_OPTIONS=a=1",
                                   "TSAN_SYMBOLIZER_PATH=/x", "LLVM_PROFILE_FILE=/x", "USER=sam"}),
        ElementsAre("PATH=/usr/bin:/bin:/usr/sbin:/sbin", "USER=sam"));
}

} // namespace
} // namespace platform
