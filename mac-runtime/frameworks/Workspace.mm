// NSWorkspace as Apple's reference describes it. Opens and shows files and addresses by the
// desktop's own opener.

#include "frameworks/Objects.h"
#include "loader/Environment.hpp"

#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace mac {

namespace {

// A grandchild, so that it need not be reaped.
void open(const std::string& what) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::fork() == 0) {
            const char* words[] = {"/usr/bin/xdg-open", what.c_str(), nullptr};
            ::execve(words[0], const_cast<char* const*>(&words[0]), programEnvironment());
        }
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
}

bool openUrl(id, SEL, NSURL* url) {
    open([[url absoluteString] UTF8String]);
    return true;
}

} // namespace

void useOwnWorkspace() {
    replaceMethod(classNamed("NSWorkspace"), "openURL:", openUrl);
}

} // namespace mac

@implementation NSWorkspace (Mac)

- (bool)accessibilityDisplayShouldReduceMotion {
    return false;
}

- (void)activateFileViewerSelectingURLs:(NSArray*)urls {
    for (NSURL* url in urls) {
        const std::string path = [[url path] UTF8String];
        mac::open(path.substr(0, path.rfind('/')));
    }
}

@end
