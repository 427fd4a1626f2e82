#include "platform/services/MainBundle.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSBundle.hpp"
#include "platform/objc/AutoreleasePool.hpp"

namespace platform {

using namespace foundation;

namespace {

// The string that the function reads from the bundle; nothing when it returns null.
template <class Function>
std::optional<std::string> readFromBundle(Function read) {
    const objc::AutoreleasePool pool;
    const NSString* text = read(NSBundle::mainBundle());
    return text == nullptr ? std::nullopt : std::optional(toString(text));
}

} // namespace

std::string mainBundlePath() {
    return readFromBundle([](NSBundle* bundle) { return bundle->bundlePath(); }).value_or("");
}

std::optional<std::string> mainBundleIdentifier() {
    return readFromBundle([](NSBundle* bundle) { return bundle->bundleIdentifier(); });
}

std::optional<std::string> mainBundleString(const std::string& key) {
    return readFromBundle([&](NSBundle* bundle) {
        NSObject* value = bundle->infoDictionary()->objectForKey(toNSString(key));
        return kindOf<NSString>(value, objc::classNamed<"NSString">());
    });
}

std::optional<std::string> mainBundleResource(const std::string& name, const std::string& type) {
    return readFromBundle([&](NSBundle* bundle) {
        NSString* extension = type.empty() ? nullptr : toNSString(type);
        return bundle->pathForResource(toNSString(name), extension);
    });
}

} // namespace platform
