// NSBundle's mainBundle for a bundle with Contents/MacOS and Contents/Resources ("Bundle
// Programming Guide"). GNUstep's has another layout and treats a backslash in a path as a slash, so
// no path is computed by GNUstep here.

#include "frameworks/Objects.h"

#include <string>
#include <unistd.h>

namespace mac {

namespace {

// NAME.app for NAME.app/Contents/MacOS/PROGRAM; for a program outside of a bundle, its folder.
std::string bundle;
std::string resources;

NSString* text(const std::string& path) {
    return [NSString stringWithUTF8String:path.c_str()];
}

} // namespace

} // namespace mac

@interface MacMainBundle : NSBundle
@end

@implementation MacMainBundle

- (NSString*)bundlePath {
    return mac::text(mac::bundle);
}

- (NSString*)resourcePath {
    return mac::text(mac::resources);
}

- (NSDictionary*)infoDictionary {
    static NSDictionary* information =
        [mac::propertyListInFile(mac::text(mac::bundle + "/Contents/Info.plist")) retain];
    return information;
}

- (NSString*)bundleIdentifier {
    return [[self infoDictionary] objectForKey:@"CFBundleIdentifier"];
}

- (NSString*)pathForResource:(NSString*)name ofType:(NSString*)type {
    std::string path = mac::resources + '/' + [name UTF8String];
    if ([type length] > 0) {
        path += std::string(".") + [type UTF8String];
    }
    return ::access(path.c_str(), F_OK) == 0 ? mac::text(path) : nil;
}

@end

namespace mac {

namespace {

NSBundle* mainBundle(Class, SEL) {
    static NSBundle* only = static_cast<NSBundle*>(class_createInstance([MacMainBundle class], 0));
    return only;
}

} // namespace

void useMainBundle(const char* programPath) {
    const std::string path(programPath);
    const std::string folder = path.substr(0, path.rfind('/'));
    const std::string_view inBundle = "/Contents/MacOS";
    if (folder.ends_with(inBundle)) {
        bundle = folder.substr(0, folder.size() - inBundle.size());
        resources = bundle + "/Contents/Resources";
    } else {
        bundle = resources = folder;
    }
    replaceMethod(metaclassOf(classNamed("NSBundle")), "mainBundle", mainBundle);
}

} // namespace mac
