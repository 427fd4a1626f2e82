// The Mac's start of the application, on stand-ins: no display is needed.

#include "platform/appkit/ApplicationStart.hpp"

#include "platform/objc/testing/AddMethod.hpp"

#include <gtest/gtest.h>

#include <optional>

namespace platform::appkit {
namespace {

std::optional<Integer> policy;

NSApplication* theApplication(NSObject*) {
    static auto* only =
        objc::sendMessage<NSApplication*>(objc::classNamed<"NSObject">(), objc::selector<"new">());
    return only;
}

Bool setPolicy(NSObject*, Integer asked) {
    policy = asked;
    return objc::toBool(true);
}

TEST(MacApplication, HasTheRegularActivationPolicy) {
    const objc::AutoreleasePool pool;
    objc::testing::addClassMethod<theApplication>("NSApplication", "sharedApplication");
    objc::testing::addMethod<setPolicy>("NSObject", "setActivationPolicy:");
    EXPECT_EQ(startApplication(), theApplication(nullptr));
    EXPECT_EQ(policy, 0);
}

} // namespace
} // namespace platform::appkit
