// NSApplication's sharedApplication: an application of GNUstep's as one of a Mac's would come up.
// And what it lacks of NSApplication's methods (Apple's reference of AppKit).

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"

#include <csignal>
#include <initializer_list>

namespace mac {

namespace {

// The distributed centre starts a daemon that outlives the program. Asked for before the methods
// are replaced: the distributed centre inherits one of them.
NSNotificationCenter* localCentre(Class, SEL) {
    static NSNotificationCenter* only = [NSNotificationCenter defaultCenter];
    return only;
}

NSNotificationCenter* localCentreForType(Class, SEL, NSString*) {
    return localCentre(Nil, nullptr);
}

void keepNotificationsLocal() {
    localCentre(Nil, nullptr);
    Class distributed = metaclassOf([NSDistributedNotificationCenter class]);
    replaceMethod(distributed, "defaultCenter", localCentre);
    replaceMethod(distributed, "notificationCenterForType:", localCentreForType);
}

// A plain window without the toolkit's own icon and menu window, and the Mac's fonts as near as may
// be.
void registerDefaults() {
    NSNumber* yes = [NSNumber numberWithBool:YES];
    NSDictionary* defaults = [NSDictionary
        dictionaryWithObjectsAndKeys:yes, @"GSSuppressAppIcon", yes, @"GSAppOwnsMiniwindow",
                                     [NSNumber numberWithInt:17], @"GSFontHinting",
                                     @"NSWindows95InterfaceStyle", @"NSMenuInterfaceStyle",
                                     @"cairo", @"GSBackend", @"Inter-Regular", @"NSFont",
                                     @"Inter-SemiBold", @"NSBoldFont", nil];
    [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
}

// A Mac's program knows points alone; what a person wants GNUstep to make of them in pixels is not
// for it. The domain of the arguments goes before a person's.
void usePixelsAsPoints() {
    NSUserDefaults* settings = [NSUserDefaults standardUserDefaults];
    NSMutableDictionary* first = [NSMutableDictionary dictionary];
    [first addEntriesFromDictionary:[settings volatileDomainForName:NSArgumentDomain]];
    [first setObject:[NSNumber numberWithInt:1] forKey:@"GSScaleFactor"];
    [settings removeVolatileDomainForName:NSArgumentDomain];
    [settings setVolatileDomain:first forName:NSArgumentDomain];
}

// For each picture that it looks for by name, GNUstep tries the ending of every kind of file that
// it can read, which are hundreds, in every folder where one may lie.
void readBitmapsOnly() {
    for (Class kind in [[[NSImageRep registeredImageRepClasses] copy] autorelease]) {
        if (kind != [NSBitmapImageRep class]) {
            [NSImageRep unregisterImageRepClass:kind];
        }
    }
}

// The marks of a menu's items, each of which costs such a search.
void leaveOutMenuMarks() {
    for (NSString *mark in
         [NSArray arrayWithObjects:@"GSMenuSelected", @"GSMenuMixed", @"GSMenuArrow", nil]) {
        [[NSImage new] setName:mark];
    }
}

// The toolkit reads its settings when it starts, as a person has them, and would write them back,
// with a lock beside them, twice a minute. Nothing is set here that would have to be kept.
using Synchronize = bool(id, SEL);
Synchronize* toolkitsSynchronize = nullptr;
bool starts = false;

bool synchronize(id self, SEL selector) {
    return starts ? toolkitsSynchronize(self, selector) : true;
}

using Shared = id(id, SEL);
Shared* toolkitsShared = nullptr;

id sharedApplication(id self, SEL selector) {
    if (NSApp != nil) {
        return NSApp;
    }
    if (starts) {
        return toolkitsShared(self, selector);
    }
    starts = true;
    keepNotificationsLocal();
    readBitmapsOnly();
    registerDefaults();
    usePixelsAsPoints();
    id application = toolkitsShared(self, selector);
    // AppKit leaves these to their default action; GNUstep ends the application inside of a
    // handler.
    for (const int number : {SIGTERM, SIGINT}) {
        ::signal(number, SIG_DFL);
    }
    serveMainQueueInRunLoop();
    serveAccessibilityClients();
    leaveOutMenuMarks();
    starts = false;
    return application;
}

} // namespace

void useOwnApplicationStart() {
    toolkitsSynchronize = replaceMethod(classNamed("NSUserDefaults"), "synchronize", synchronize);
    toolkitsShared = replaceMethod(metaclassOf(classNamed("NSApplication")), "sharedApplication",
                                   sharedApplication);
}

} // namespace mac

@implementation NSApplication (Mac)

// Only an application with a menu bar and a window is here.
- (bool)setActivationPolicy:(NSInteger)policy {
    if (policy != 0) {
        mac::fail("setActivationPolicy: %ld", policy);
    }
    return true;
}

// Nothing launches anything at login here.
- (void)disableRelaunchOnLogin {
}

@end
