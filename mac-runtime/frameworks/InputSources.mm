// Text Input Source Services (<HIToolbox/TextInputSources.h>) on the practice Mac's list of input
// sources. On a Mac with Apple silicon they trap on any thread but the first.

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"

namespace mac {

namespace {

NSString* const registry = @"/var/db/practice-mac/input-sources.plist";
constexpr int noError = 0;
constexpr int parameterError = -50;

NSString* const bundleProperty = @"TISPropertyBundleID";
NSString* const identifierProperty = @"TISPropertyInputSourceID";

// The registry's key for a property.
NSString* keyOf(NSString* property) {
    if ([property isEqual:bundleProperty]) {
        return @"BundleID";
    }
    if ([property isEqual:identifierProperty]) {
        return @"InputSourceID";
    }
    fail("the input sources' property %s is not known", [property UTF8String]);
}

NSMutableArray* readRegistry() {
    if (!isFirstThread()) {
        fail("the input sources were asked for off the main thread");
    }
    NSMutableArray* sources = [NSMutableArray array];
    id list = propertyListInFile(registry);
    if ([list isKindOfClass:[NSArray class]]) {
        for (id entry in static_cast<NSArray*>(list)) {
            if ([entry isKindOfClass:[NSDictionary class]]) {
                [sources addObject:[[entry mutableCopy] autorelease]];
            }
        }
    }
    return sources;
}

// Calls `change` with each entry of the registry and whether it is the source, which may be listed
// twice; writes the registry back if one is.
template <class Change>
int changeRegistry(NSDictionary* source, Change change) {
    NSMutableArray* sources = readRegistry();
    bool isThere = false;
    for (NSMutableDictionary* entry in sources) {
        const bool isIt =
            [[entry objectForKey:@"InputSourceID"] isEqual:[source objectForKey:@"InputSourceID"]];
        isThere = isThere || isIt;
        change(entry, isIt);
    }
    return isThere && writePropertyList(sources, registry) ? noError : parameterError;
}

NSNumber* yes(bool value) {
    return [NSNumber numberWithBool:value];
}

namespace darwin {

// The sources that have each of the filter's properties; with `all` also disabled ones.
NSArray* createInputSourceList(NSDictionary* filter, bool all) {
    NSMutableArray* found = [NSMutableArray new];
    for (NSDictionary* source in readRegistry()) {
        bool fits = all || [[source objectForKey:@"Enabled"] boolValue];
        for (NSString* property in filter) {
            fits = fits &&
                   [[filter objectForKey:property] isEqual:[source objectForKey:keyOf(property)]];
        }
        if (fits) {
            [found addObject:source];
        }
    }
    return found;
}

NSDictionary* copyCurrentKeyboardInputSource() {
    for (NSDictionary* source in readRegistry()) {
        if ([[source objectForKey:@"Selected"] boolValue]) {
            return [source retain];
        }
    }
    return nil;
}

id getInputSourceProperty(NSDictionary* source, NSString* property) {
    return [source objectForKey:keyOf(property)];
}

int selectInputSource(NSDictionary* source) {
    return changeRegistry(source, [](NSMutableDictionary* entry, bool isIt) {
        [entry setObject:yes(isIt) forKey:@"Selected"];
        if (isIt) {
            [entry setObject:yes(true) forKey:@"Enabled"];
        }
    });
}

int disableInputSource(NSDictionary* source) {
    return changeRegistry(source, [](NSMutableDictionary* entry, bool isIt) {
        if (isIt) {
            [entry setObject:yes(false) forKey:@"Enabled"];
        }
    });
}

} // namespace darwin

} // namespace

Symbols inputSourceSymbols() {
    static const Symbol symbols[] = {
        {"_kTISPropertyBundleID", &bundleProperty},
        {"_kTISPropertyInputSourceID", &identifierProperty},
        {"_TISCreateInputSourceList", address(darwin::createInputSourceList)},
        {"_TISCopyCurrentKeyboardInputSource", address(darwin::copyCurrentKeyboardInputSource)},
        {"_TISGetInputSourceProperty", address(darwin::getInputSourceProperty)},
        {"_TISSelectInputSource", address(darwin::selectInputSource)},
        {"_TISDisableInputSource", address(darwin::disableInputSource)},
    };
    return symbols;
}

} // namespace mac
