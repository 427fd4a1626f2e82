#include "platform/services/MainBundle.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSBundle.hpp"
#include "platform/objc/AutoreleasePool.hpp"

namespace platform {

using namespace foundation;

namespace {

std::optional<std::string> textOrNothing(const NSString* text) {
    return text == nullptr ? std::nullopt : std::optional(toString(text));
}

} // namespace

std::string mainBundlePath() {
    const objc::AutoreleasePool pool;
    return toString(NSBundle::mainBundle()->bundlePath());
}

std::optional<std::string> mainBundleIdentifier() {
    const objc::AutoreleasePool pool;
    return textOrNothing(NSBundle::mainBundle()->bundleIdentifier());
}

std::optional<std::string> mainBundleString(const std::string& key) {
    const objc::AutoreleasePool pool;
    NSObject* value = NSBundle::mainBundle()->infoDictionary()->objectForKey(toNSString(key));
    return textOrNothing(kindOf<NSString>(value, objc::classNamed<"NSString">()));
}

std::optional<std::string> mainBundleResource(const std::string& name, const std::string& type) {
    const objc::AutoreleasePool pool;
    NSString* extension = type.empty() ? nullptr : toNSString(type);
    return textOrNothing(NSBundle::mainBundle()->pathForResource(toNSString(name), extension));
}

} // namespace platform
