// NSAppleScript, by the practice Mac's osascript, which inherits the program's environment as on a
// Mac. Errors are a dictionary with the message and the number (Apple's reference of NSAppleScript,
// "Error Information").

#include "frameworks/Objects.h"
#include "loader/Environment.hpp"
#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <pthread.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace mac {

namespace {

constexpr const char* tool = "/usr/bin/osascript";

NSString* const errorMessage = @"NSAppleScriptErrorMessage";
NSString* const errorNumber = @"NSAppleScriptErrorNumber";

struct Ended {
    bool succeeded;
    std::string errors;
};

[[noreturn]] void becomeTool(const char* source, int errors) {
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
    ::dup2(errors, STDERR_FILENO);
    const char* words[] = {tool, "-e", source, nullptr};
    ::execve(tool, const_cast<char* const*>(&words[0]), programEnvironment());
    ::_exit(127);
}

Ended runTool(const char* source) {
    int ends[2];
    if (::pipe2(&ends[0], O_CLOEXEC) != 0) {
        fail("AppleScript has no pipe");
    }
    const pid_t child = ::fork();
    if (child == 0) {
        becomeTool(source, ends[1]);
    }
    ::close(ends[1]);
    Ended ended{};
    char bytes[4096];
    while (true) {
        const ssize_t count = ::read(ends[0], &bytes[0], sizeof bytes);
        if (count > 0) {
            ended.errors.append(&bytes[0], static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    ::close(ends[0]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    ended.succeeded = status == 0;
    return ended;
}

// "0:52: execution error: MESSAGE (NUMBER)". The message may contain line breaks and parentheses.
NSDictionary* informationFrom(std::string text) {
    while (text.ends_with('\n')) {
        text.pop_back();
    }
    NSMutableDictionary* information = [NSMutableDictionary dictionary];
    const std::size_t number = text.rfind(" (");
    if (number != std::string::npos && text.ends_with(')')) {
        [information setObject:[NSNumber numberWithInt:std::atoi(text.c_str() + number + 2)]
                        forKey:errorNumber];
        text.erase(number);
    }
    const std::string_view mark = "error: ";
    if (const std::size_t begin = text.find(mark); begin != std::string::npos) {
        text.erase(0, begin + mark.size());
    }
    if (NSString* message = [NSString stringWithUTF8String:text.c_str()];[message length] > 0) {
        [information setObject:message forKey:errorMessage];
    }
    return information;
}

} // namespace

} // namespace mac

@interface MacAppleScript : NSAppleScript {
    NSString* source;
}
@end

@implementation MacAppleScript

// Without the tool no script can be made.
- (id)initWithSource:(NSString*)text {
    self = [super init];
    source = [text copy];
    if (::access(mac::tool, X_OK) != 0) {
        [self release];
        return nil;
    }
    return self;
}

- (void)dealloc {
    [source release];
    [super dealloc];
}

// "NSAppleScript class reference": to be used on the main thread, or on one thread only.
- (id)executeAndReturnError:(NSDictionary**)information {
    static pthread_t only{};
    if (only == 0) {
        only = pthread_self();
    }
    if (!mac::isFirstThread() && only != pthread_self()) {
        mac::fail("AppleScript on a second thread");
    }
    const mac::Ended ended = mac::runTool([source UTF8String]);
    if (ended.succeeded) {
        return [[NSObject new] autorelease];
    }
    if (information != nullptr) {
        *information = mac::informationFrom(ended.errors);
    }
    return nil;
}

@end

namespace mac {

namespace {

// GNUstep's class has no methods.
id allocate(Class, SEL) {
    return NSAllocateObject([MacAppleScript class], 0, nullptr);
}

} // namespace

void useOwnAppleScript() {
    replaceMethod(metaclassOf(classNamed("NSAppleScript")), "alloc", allocate);
}

Symbols appleScriptSymbols() {
    static const Symbol symbols[] = {
        {"_NSAppleScriptErrorMessage", &errorMessage},
        {"_NSAppleScriptErrorNumber", &errorNumber},
    };
    return symbols;
}

} // namespace mac
