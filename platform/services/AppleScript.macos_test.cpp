// How the Mac's sources run a script, on stand-ins for the methods that this toolkit's script class
// lacks.

#include "platform/services/AppleScript.hpp"

#include "platform/foundation/FoundationSymbols.hpp"
#include "platform/foundation/NSAppleScript.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/foundation/testing/ConstantString.hpp"
#include "platform/objc/testing/AddMethod.hpp"

#include <gmock/gmock.h>

#include <cmath>

namespace platform {
namespace {

using namespace foundation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

/// What the system was asked to run, and how it answers.
struct System {
    std::vector<std::string> sources{};
    bool takesSource = true;
    objc::Retained<NSDictionary> failure{}; ///< null: the script succeeds
};

System mac;

NSAppleScript* initWithSource(NSAppleScript* script, NSString* source) {
    mac.sources.push_back(toString(source));
    if (mac.takesSource) {
        return script;
    }
    InstanceMethod<"NSObject", "release", void()>::send(script);
    return nullptr;
}

NSObject* execute(NSObject* script, NSDictionary** information) {
    if (mac.failure) {
        *information = mac.failure.get();
        return nullptr;
    }
    return script;
}

class AppleScriptOnAMac : public ::testing::Test {
  protected:
    AppleScriptOnAMac() {
        static const bool once = [] {
            using objc::testing::addMethod;
            addMethod<initWithSource>("NSAppleScript", "initWithSource:");
            addMethod<execute>("NSAppleScript", "executeAndReturnError:");
            return true;
        }();
        EXPECT_TRUE(once);
    }

    ~AppleScriptOnAMac() override { mac = {}; }

    static void failWith(NSObject* message, NSObject* number) {
        auto* information = NSMutableDictionary::dictionaryWithCapacity(2);
        if (message != nullptr) {
            information->setObject(message, NSAppleScriptErrorMessage);
        }
        if (number != nullptr) {
            information->setObject(number, NSAppleScriptErrorNumber);
        }
        mac.failure = objc::retain<NSDictionary>(information);
    }

    objc::AutoreleasePool pool_{};
};

TEST_F(AppleScriptOnAMac, RunsTheSourceUnchangedAndReportsNoErrorOnSuccess) {
    const auto outcome = runAppleScript("do shell script \"true\" -- é");
    EXPECT_TRUE(outcome.created);
    EXPECT_FALSE(outcome.error);
    EXPECT_THAT(mac.sources, ElementsAre("do shell script \"true\" -- é"));
}

TEST_F(AppleScriptOnAMac, ReportsTheMessageAndNumberOfAFailure) {
    failWith(toNSString("User canceled."), NSNumber::numberWithLongLong(-128));
    const auto outcome = runAppleScript("script");
    EXPECT_TRUE(outcome.created);
    ASSERT_TRUE(outcome.error);
    EXPECT_THAT(outcome.error->message, Optional(std::string("User canceled.")));
    EXPECT_THAT(outcome.error->number, Optional(-128));
}

TEST_F(AppleScriptOnAMac, ReportsAFailureWithoutMessageOrNumber) {
    failWith(nullptr, nullptr);
    auto outcome = runAppleScript("script");
    ASSERT_TRUE(outcome.error);
    EXPECT_FALSE(outcome.error->message);
    EXPECT_FALSE(outcome.error->number);

    failWith(NSNumber::numberWithLongLong(1), toNSString("-128")); // of the wrong kinds
    outcome = runAppleScript("script");
    ASSERT_TRUE(outcome.error);
    EXPECT_FALSE(outcome.error->message);
    EXPECT_FALSE(outcome.error->number);
}

TEST_F(AppleScriptOnAMac, DropsNumbersThatAreNoIntegers) {
    const auto numberFor = [](NSNumber* number) {
        failWith(toNSString("message"), number);
        const auto error = runAppleScript("script").error.value();
        EXPECT_THAT(error.message, Optional(std::string("message")));
        return error.number;
    };
    EXPECT_THAT(numberFor(NSNumber::numberWithLongLong(4294967168)), Optional(4294967168));
    EXPECT_THAT(numberFor(NSNumber::numberWithDouble(-128)), Optional(-128));
    EXPECT_EQ(numberFor(NSNumber::numberWithDouble(-128.5)), std::nullopt);
    EXPECT_EQ(numberFor(NSNumber::numberWithDouble(1e300)), std::nullopt);
    EXPECT_EQ(numberFor(NSNumber::numberWithDouble(std::nan(""))), std::nullopt);
    EXPECT_EQ(numberFor(NSNumber::numberWithUnsignedLongLong(18446744073709551488U)),
              std::nullopt); // the bits of -128
}

TEST_F(AppleScriptOnAMac, ReportsASourceOfWhichNoScriptCanBeMade) {
    mac.takesSource = false;
    EXPECT_FALSE(runAppleScript("script").created);
    mac.sources.clear();
    EXPECT_FALSE(runAppleScript("no UTF-8: \xff").created);
    EXPECT_THAT(mac.sources, IsEmpty());
}

} // namespace
} // namespace platform

using platform::foundation::testing::constantString;

platform::foundation::NSString* const NSAppleScriptErrorMessage = constantString("message");
platform::foundation::NSString* const NSAppleScriptErrorNumber = constantString("number");
