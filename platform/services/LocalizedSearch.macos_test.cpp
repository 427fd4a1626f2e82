// What the Mac's sources ask of a text, on a stand-in for the method that is not here.

#include "platform/services/LocalizedSearch.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/objc/testing/AddMethod.hpp"

#include <gmock/gmock.h>

namespace platform {
namespace {

using namespace foundation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> asked;
bool answer = false;

Bool contains(NSObject* text, NSString* part) {
    asked.push_back(toString(static_cast<NSString*>(text)) + " for " + toString(part));
    return objc::toBool(answer);
}

class LocalizedSearchOnAMac : public ::testing::Test {
  protected:
    LocalizedSearchOnAMac() {
        objc::testing::addMethod<contains>("NSString", "localizedCaseInsensitiveContainsString:");
        asked.clear();
        answer = false;
    }
};

TEST_F(LocalizedSearchOnAMac, IsFoundations) {
    answer = true;
    EXPECT_TRUE(localizedCaseInsensitiveContains("KOVRA ı 🎉", "kovra"));
    answer = false;
    EXPECT_FALSE(localizedCaseInsensitiveContains("kovra", "kovra"));
    EXPECT_THAT(asked, ElementsAre("KOVRA ı 🎉 for kovra", "kovra for kovra"));
}

TEST_F(LocalizedSearchOnAMac, FindsNothingWhereThereIsNoText) {
    answer = true;
    EXPECT_FALSE(localizedCaseInsensitiveContains("kovra\xFF", "kovra"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("kovra", "\xFF"));
    EXPECT_THAT(asked, IsEmpty());
}

} // namespace
} // namespace platform
