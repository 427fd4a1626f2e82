// The Mac's requests to the desktop, on a stand-in for NSWorkspace.

#include "platform/services/Workspace.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSArray.hpp"
#include "platform/foundation/NSURL.hpp"
#include "platform/foundation/NSWorkspace.hpp"
#include "platform/objc/testing/AddMethod.hpp"

#include <gmock/gmock.h>

namespace platform {
namespace {

using namespace foundation;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::StartsWith;

std::vector<std::string> asked;

std::string textOf(const NSObject* url) {
    return toString(InstanceMethod<"NSURL", "absoluteString", NSString*()>::send(url));
}

Bool openURL(NSObject*, NSURL* url) {
    asked.push_back("open " + textOf(url));
    return objc::toBool(true);
}

void reveal(NSObject*, NSArray* urls) {
    for (UInteger i = 0; i < urls->count(); ++i) {
        asked.push_back("reveal " + textOf(urls->objectAtIndex(i)));
    }
}

NSWorkspace* sharedWorkspace(NSObject*) {
    static NSWorkspace* only =
        objc::sendMessage<NSWorkspace*>(objc::requireClass("NSWorkspace"), objc::selector<"new">());
    return only;
}

class WorkspaceOnAMac : public ::testing::Test {
  protected:
    WorkspaceOnAMac() {
        static const bool once = [] {
            objc::ClassBuilder("NSWorkspace", "NSObject")
                .method<openURL>("openURL:")
                .method<reveal>("activateFileViewerSelectingURLs:")
                .registered();
            objc::testing::addClassMethod<sharedWorkspace>("NSWorkspace", "sharedWorkspace");
            return true;
        }();
        EXPECT_TRUE(once);
        asked.clear();
    }
};

TEST_F(WorkspaceOnAMac, OpensAnAddress) {
    openAddress("https://example.com/a?b=c");
    EXPECT_THAT(asked, ElementsAre("open https://example.com/a?b=c"));
}

TEST_F(WorkspaceOnAMac, OpensNothingForIllFormedUtf8) {
    openAddress("https://example.com/\xff");
    revealFile("/tmp/\xff");
    EXPECT_THAT(asked, IsEmpty());
}

TEST_F(WorkspaceOnAMac, RevealsAFileByItsPath) {
    revealFile("/Users/sam/Library/Logs/a b.log");
    EXPECT_THAT(asked, ElementsAre(AllOf(StartsWith("reveal file:/"),
                                         EndsWith("/Users/sam/Library/Logs/a%20b.log"))));
}

} // namespace
} // namespace platform
