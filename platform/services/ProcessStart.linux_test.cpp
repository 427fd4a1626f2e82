// The variables that are kept on Linux alone.

#include "platform/services/ProcessStart.hpp"

#include "platform/testing/Environment.hpp"

#include <gmock/gmock.h>

namespace platform {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAreArray;

TEST(ReducedEnvironmentOnLinux, AlsoKeepsVariablesOfTheDisplayTheToolkitAndTestTools) {
    std::vector<std::string> entries{"DISPLAY=:0",
                                     "XAUTHORITY=/Users/sam/.Xauthority",
                                     "GNUSTEP_CONFIG_FILE=/etc/GNUstep.conf",
                                     "ASAN_OPTIONS=a=1:b=2",
                                     "UBSAN_OPTIONS=print_stacktrace=1",
                                     "ASAN_SYMBOLIZER_PATH=/usr/bin/llvm-symbolizer",
                                     "LLVM_PROFILE_FILE=/tmp/p/%m"};
    auto expected = entries;
    expected.emplace_back("PATH=/usr/bin:/bin:/usr/sbin:/sbin");
    EXPECT_THAT(testing::environmentAfter(reduceEnvironment, std::move(entries)),
                UnorderedElementsAreArray(expected));
}

TEST(ReducedEnvironmentOnLinux, DropsNamesThatResembleThese) {
    EXPECT_THAT(testing::environmentAfter(reduceEnvironment,
                                          {"DISPLAYS=:0", "XAUTHORITY_=x", "XGNUSTEP_=x",
                                           "GNUSTEP=x", "ASAN_OPTIONS_=x", "OPTIONS=x",
                                           "BASH_FUNC_GNUSTEP_%%=x", "BASH_FUNC_x%%SAN_OPTIONS=x",
                                           "GNUSTEP_x()=x", "LLVM_PROFILE_FILES=x",
                                           "DISPLAY=() { :; }", "ASAN_OPTIONS=a\n=1"}),
                ElementsAre("PATH=/usr/bin:/bin:/usr/sbin:/sbin"));
}

} // namespace
} // namespace platform
