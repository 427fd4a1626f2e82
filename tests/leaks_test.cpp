// The leak check of a sanitized build finds our leaks, also in calls from the toolkit, and ignores
// the toolkit's own.

#include "platform/appkit/NSAppearance.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/objc/ClassBuilder.hpp"
#include "platform/objc/Retained.hpp"
#include "platform/services/ProcessStart.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <unistd.h>

namespace {

using platform::appkit::NSAppearance;
using platform::foundation::NSObject;
namespace objc = platform::objc;
using objc::ClassMethod;
using objc::InstanceMethod;

void forgetMemory(NSObject*) {
    static volatile std::size_t size = 100;
    static_cast<void>(::operator new(size));
}

void forgetObject(NSObject*) {
    static_cast<void>(ClassMethod<"NSMutableData", "new", NSObject*()>::send());
}

void useForgetfulMethods(NSObject*) {
    auto* name = platform::foundation::toNSString("NSAppearanceNameAqua");
    for (int times = 0; times < 3; ++times) {
        static_cast<void>(NSAppearance::appearanceNamed(name));
        static_cast<void>(
            ClassMethod<"NSUserDefaults", "standardUserDefaults", NSObject*()>::send());
    }
}

// In a process that has started like the program, lets the toolkit call the function, and exits.
template <auto Function>
[[noreturn]] void endAfterCallbackTo() {
    {
        char name[] = "leaks_test";
        char* arguments[] = {name, nullptr};
        platform::initializeProcess(arguments, environ);
        const objc::AutoreleasePool pool;
        const Class made = objc::ClassBuilder("KovraTestForgetful", "NSObject")
                               .template method<Function>("callback")
                               .registered();
        const auto object =
            objc::adopt(objc::sendMessage<NSObject*>(made, objc::selector<"new">()));
        InstanceMethod<"NSObject", "performSelector:", NSObject*(SEL)>::send(
            object.get(), objc::selector<"callback">());
    }
    std::exit(0);
}

class LeaksDeathTest : public ::testing::Test {
  protected:
    LeaksDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

constexpr const char* found = "detected memory leaks";

TEST_F(LeaksDeathTest, OfMemoryInACallbackAreFound) {
    EXPECT_EXIT(endAfterCallbackTo<forgetMemory>(), ::testing::ExitedWithCode(1), found);
}

TEST_F(LeaksDeathTest, OfTheToolkitsObjectsInACallbackAreFound) {
    EXPECT_EXIT(endAfterCallbackTo<forgetObject>(), ::testing::ExitedWithCode(1), found);
}

TEST_F(LeaksDeathTest, OfTheToolkitItselfAreNot) {
    EXPECT_EXIT(endAfterCallbackTo<useForgetfulMethods>(), ::testing::ExitedWithCode(0), "^$");
}

} // namespace
