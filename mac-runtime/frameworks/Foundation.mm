// NSHomeDirectory, NSTemporaryDirectory, NSProcessInfo's operatingSystemVersion and NSString's
// localizedCaseInsensitiveContainsString:, as Apple's reference of Foundation describes them.

#include "frameworks/Objects.h"
#include "loader/Environment.hpp"
#include "loader/Program.hpp"
#include "loader/Symbols.hpp"
#include "system/PracticeMac.hpp"

#include <cstdio>
#include <cstdlib>
#include <pwd.h>
#include <string>
#include <unistd.h>

extern "C" char** environ;
extern "C" void GSInitializeProcess(int argc, char** argv, char** envp);

namespace mac {

void useMainBundle(const char* programPath); // MainBundle.mm
void useOwnPropertyLists();                  // PropertyLists.mm
void useOwnApplicationStart();               // ApplicationStart.mm
void useOwnAppleScript();                    // AppleScript.mm
void useOwnDrawing();                        // Drawing.mm
void useOwnWorkspace();                      // Workspace.mm
void useOwnAccessibility();                  // Accessibility.mm

bool isFromProgram(const void* returnAddress) {
    return program().contains(reinterpret_cast<std::uintptr_t>(returnAddress));
}

namespace {

// Classes that the program uses on background threads are initialised before there are any threads
// (the reason is in Messages.mm).
void initializeClasses() {
    for (const char* name : {"NSArray",
                             "NSMutableArray",
                             "NSAutoreleasePool",
                             "NSBundle",
                             "NSData",
                             "NSMutableData",
                             "NSDate",
                             "NSDictionary",
                             "NSMutableDictionary",
                             "NSEnumerator",
                             "NSError",
                             "NSException",
                             "NSFileManager",
                             "NSNumber",
                             "NSObject",
                             "NSProcessInfo",
                             "NSPropertyListSerialization",
                             "NSRunLoop",
                             "NSString",
                             "NSMutableString",
                             "NSThread",
                             "NSTimer",
                             "NSTimeZone",
                             "NSURL",
                             "NSUserDefaults",
                             "NSValue",
                             "NSLocale",
                             "GSArray",
                             "GSMutableArray",
                             "GSInlineArray",
                             "GSDictionary",
                             "GSMutableDictionary",
                             "GSString",
                             "GSCString",
                             "GSCBufferString",
                             "GSCInlineString",
                             "GSUnicodeString",
                             "GSUInlineString",
                             "GSMutableString",
                             "GSUnicodeBufferString",
                             "NSDataStatic",
                             "NSDataMalloc",
                             "NSMutableDataMalloc",
                             "NSIntNumber",
                             "NSLongLongNumber",
                             "NSUnsignedLongLongNumber",
                             "NSDoubleNumber",
                             "NSBoolNumber",
                             "NSGDate",
                             "NSArrayEnumerator",
                             "GSDictionaryKeyEnumerator",
                             "NSAppleScript",
                             "GSPerformHolder",
                             "NotificationQueueList"}) {
        [classNamed(name) class];
    }
}

NSString* withoutSlashAtEnd(const char* path) {
    std::string text(path);
    while (text.size() > 1 && text.ends_with('/')) {
        text.pop_back();
    }
    return [NSString stringWithUTF8String:text.c_str()];
}

namespace darwin {

// Without a sandbox: HOME, or the account's home folder.
NSString* homeDirectory() {
    if (const char* home = programVariable("HOME"); home != nullptr && *home != '\0') {
        return withoutSlashAtEnd(home);
    }
    const passwd* account = ::getpwuid(::getuid());
    return withoutSlashAtEnd(account == nullptr ? "/" : account->pw_dir);
}

// The path ends in a slash.
NSString* temporaryDirectory() {
    const char* folder = programVariable("TMPDIR");
    const std::string path = folder == nullptr || *folder == '\0' ? "/tmp" : folder;
    return [NSString stringWithUTF8String:(path.ends_with('/') ? path : path + '/').c_str()];
}

} // namespace darwin

} // namespace

void prepareFrameworks(const char* programPath) {
    // The toolkit's own files are those of the fetched packages.
    ::setenv("GNUSTEP_CONFIG_FILE", MAC_RUNTIME_TOOLKIT, 1);
    // The toolkit would open arguments without a dash as documents.
    char* arguments[] = {const_cast<char*>(programPath), nullptr};
    GSInitializeProcess(1, &arguments[0], environ);
    @autoreleasepool {
        initializeClasses();
        useMainBundle(programPath);
        useOwnPropertyLists();
        useOwnApplicationStart();
        useOwnAppleScript();
        useOwnDrawing();
        useOwnWorkspace();
        useOwnAccessibility();
    }
}

Symbols foundationSymbols() {
    static const Symbol symbols[] = {
        {"_NSHomeDirectory", address(darwin::homeDirectory)},
        {"_NSTemporaryDirectory", address(darwin::temporaryDirectory)},
    };
    return symbols;
}

} // namespace mac

struct MacSystemVersion {
    NSInteger major, minor, patch;
};

@implementation NSProcessInfo (Mac)

- (MacSystemVersion)operatingSystemVersion {
    MacSystemVersion version{};
    std::sscanf(mac::practiceMacText("ProductVersion").value_or("").c_str(), "%ld.%ld.%ld",
                &version.major, &version.minor, &version.patch);
    return version;
}

@end

@implementation NSString (Mac)

- (bool)localizedCaseInsensitiveContainsString:(NSString*)part {
    return [self rangeOfString:part options:NSCaseInsensitiveSearch].location != NSNotFound;
}

@end
