// NSApplication's sharedApplication: starts an application of GNUstep so that it looks like one of
// a Mac. And methods of NSApplication that GNUstep lacks (Apple's reference of AppKit).

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"

#include <csignal>
#include <initializer_list>

namespace mac {

namespace {

// The distributed notification centre would start a daemon that outlives the program. It is looked
// up before the methods are replaced, since it inherits one of them.
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

// A plain window without the toolkit's icon and menu windows, and fonts near the Mac's.
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

// A Mac program knows points only; a person's scale factor for GNUstep must not apply. The argument
// domain overrides a person's.
void usePixelsAsPoints() {
    NSUserDefaults* settings = [NSUserDefaults standardUserDefaults];
    NSMutableDictionary* first = [NSMutableDictionary dictionary];
    [first addEntriesFromDictionary:[settings volatileDomainForName:NSArgumentDomain]];
    [first setObject:[NSNumber numberWithInt:1] forKey:@"GSScaleFactor"];
    [settings removeVolatileDomainForName:NSArgumentDomain];
    [settings setVolatileDomain:first forName:NSArgumentDomain];
}

// For each image by name GNUstep tries hundreds of file name extensions, those of every type that
// it can read, in each folder of images.
void readBitmapsOnly() {
    for (Class kind in [[[NSImageRep registeredImageRepClasses] copy] autorelease]) {
        if (kind != [NSBitmapImageRep class]) {
            [NSImageRep unregisterImageRepClass:kind];
        }
    }
}

// The images of a menu item's states, each of which would cost such a search.
void leaveOutMenuMarks() {
    for (NSString *mark in
         [NSArray arrayWithObjects:@"GSMenuSelected", @"GSMenuMixed", @"GSMenuArrow", nil]) {
        [[NSImage new] setName:mark];
    }
}

// The toolkit reads a person's settings at the start, and would write them back, with a lock file
// beside them, twice a minute. The program sets nothing that has to be kept.
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
    // AppKit leaves these signals to their default action; GNUstep ends the application inside a
    // signal handler.
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

// Applications without a menu bar and window are not supported.
- (bool)setActivationPolicy:(NSInteger)policy {
    if (policy != 0) {
        mac::fail("setActivationPolicy: %ld", policy);
    }
    return true;
}

// Nothing is launched at login here.
- (void)disableRelaunchOnLogin {
}

@end
