// The Mac's main bundle on stand-ins for NSBundle's methods: GNUstep's bundles have another layout.

#include "platform/services/MainBundle.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSBundle.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/objc/testing/AddMethod.hpp"
#include "platform/services/ProcessStart.hpp"
#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

namespace platform {
namespace {

using namespace foundation;
using ::testing::ElementsAre;
using ::testing::Optional;

/// The bundle of the stand-ins, and the lookups in it.
struct Bundle {
    const char* identifier = "ai.kovra.test";
    std::vector<std::string> lookups;
    std::filesystem::path folderAtFirst; ///< the current one when the path was first read
    std::vector<objc::Retained<NSObject>> given;
};

Bundle bundle;

// What a method gives back outlives the pool of its own call.
template <class Kind>
Kind* kept(Kind* object) {
    bundle.given.push_back(objc::retain<NSObject>(object));
    return object;
}

NSString* path(NSObject*) {
    if (bundle.folderAtFirst.empty()) {
        bundle.folderAtFirst = std::filesystem::current_path();
    }
    return kept(toNSString("/Applications/Grüße.app"));
}

NSString* identifier(NSObject*) {
    return bundle.identifier == nullptr ? nullptr : kept(toNSString(bundle.identifier));
}

NSDictionary* information(NSObject*) {
    auto* dictionary = NSMutableDictionary::dictionaryWithCapacity(2);
    dictionary->setObject(toNSString("1.2"), toNSString("text"));
    dictionary->setObject(NSNumber::numberWithLongLong(3), toNSString("number"));
    return kept(dictionary);
}

NSString* find(NSObject*, NSString* name, NSString* type) {
    bundle.lookups.push_back(toString(name) + (type == nullptr ? "" : "." + toString(type)));
    return toString(name) == "missing" ? nullptr
                                       : kept(toNSString("/found/" + bundle.lookups.back()));
}

NSBundle* mainBundle(NSObject*) {
    static NSBundle* only =
        objc::sendMessage<NSBundle*>(objc::requireClass("TestBundle"), objc::selector<"new">());
    return only;
}

class MainBundleOnAMac : public ::testing::Test {
  protected:
    MainBundleOnAMac() {
        static const bool once = [] {
            objc::ClassBuilder("TestBundle", "NSObject")
                .method<path>("bundlePath")
                .method<identifier>("bundleIdentifier")
                .method<information>("infoDictionary")
                .method<find>("pathForResource:ofType:")
                .registered();
            objc::testing::addClassMethod<mainBundle>("NSBundle", "mainBundle");
            return true;
        }();
        EXPECT_TRUE(once);
    }

    ~MainBundleOnAMac() override { bundle = {}; }
};

TEST_F(MainBundleOnAMac, HasItsPathAndItsIdentifier) {
    EXPECT_EQ(mainBundlePath(), "/Applications/Grüße.app");
    EXPECT_THAT(mainBundleIdentifier(), Optional(std::string("ai.kovra.test")));
    bundle.identifier = nullptr;
    EXPECT_EQ(mainBundleIdentifier(), std::nullopt);
}

TEST_F(MainBundleOnAMac, ReturnsOnlyStringsOfItsInfoDictionary) {
    EXPECT_THAT(mainBundleString("text"), Optional(std::string("1.2")));
    EXPECT_EQ(mainBundleString("number"), std::nullopt);
    EXPECT_EQ(mainBundleString("absent"), std::nullopt);
}

TEST_F(MainBundleOnAMac, LooksForAResourceByNameAndType) {
    EXPECT_THAT(mainBundleResource("uninstall", "sh"),
                Optional(std::string("/found/uninstall.sh")));
    EXPECT_THAT(mainBundleResource("tistool", ""), Optional(std::string("/found/tistool")));
    EXPECT_EQ(mainBundleResource("missing", "sh"), std::nullopt);
    EXPECT_THAT(bundle.lookups, ElementsAre("uninstall.sh", "tistool", "missing.sh"));
}

TEST_F(MainBundleOnAMac, IsFoundBeforeTheProgramLeavesTheFolderThatItWasStartedIn) {
    EXPECT_TRUE(testing::holdsInForkedProcess([] {
        const testing::TemporaryFolder started;
        std::filesystem::current_path(started.path());
        std::string name = "./program";
        char* argv[] = {name.data(), nullptr};
        beginProgram(argv);
        const char* path = std::getenv("PATH");
        return bundle.folderAtFirst == started.path() && std::filesystem::current_path() == "/" &&
               path != nullptr && std::string_view(path) == "/usr/bin:/bin:/usr/sbin:/sbin";
    }));
}

} // namespace
} // namespace platform
