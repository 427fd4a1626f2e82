#include "platform/services/InputSources.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSDictionary.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/TextCase.hpp"

// The Text Input Sources interface of the system's Carbon framework. Its strings, arrays and
// dictionaries are Foundation's by another name.
extern "C" {
using TISInputSourceRef = platform::foundation::NSObject*;
extern platform::foundation::NSString* const kTISPropertyBundleID;
extern platform::foundation::NSString* const kTISPropertyInputSourceID;
TISInputSourceRef TISCopyCurrentKeyboardInputSource();
platform::foundation::NSArray* TISCreateInputSourceList(platform::foundation::NSDictionary* filter,
                                                        unsigned char includeAllInstalled);
platform::foundation::NSObject* TISGetInputSourceProperty(TISInputSourceRef source,
                                                          platform::foundation::NSString* key);
int TISSelectInputSource(TISInputSourceRef source);
int TISDisableInputSource(TISInputSourceRef source);
}

namespace platform {

namespace {

using namespace foundation;

// A list that is missing or no list holds nothing.
objc::Retained<NSArray> sourcesWith(NSString* property, const std::string& value) {
    auto* filter = NSMutableDictionary::dictionaryWithCapacity(1);
    filter->setObject(toNSString(value), property);
    auto list = objc::adopt(TISCreateInputSourceList(filter, 1));
    const bool isList = list && list->isKindOfClass(objc::classNamed<"NSArray">());
    return isList ? list : objc::Retained<NSArray>();
}

std::string identifierOf(TISInputSourceRef source) {
    auto* identifier =
        kindOf<NSString>(TISGetInputSourceProperty(source, kTISPropertyInputSourceID),
                         objc::classNamed<"NSString">());
    return toString(identifier);
}

} // namespace

int inputSourceCount(const std::string& bundleIdentifier) {
    const objc::AutoreleasePool pool;
    const auto sources = sourcesWith(kTISPropertyBundleID, bundleIdentifier);
    return sources ? static_cast<int>(sources->count()) : 0;
}

std::optional<std::string> currentInputSourceIdentifier() {
    const objc::AutoreleasePool pool;
    const auto current = objc::adopt(TISCopyCurrentKeyboardInputSource());
    if (!current) {
        return std::nullopt;
    }
    return identifierOf(current.get());
}

bool selectInputSource(const std::string& identifier) {
    const objc::AutoreleasePool pool;
    const auto sources = sourcesWith(kTISPropertyInputSourceID, identifier);
    if (!sources || sources->count() == 0) {
        return false;
    }
    TISSelectInputSource(sources->objectAtIndex(0));
    return true;
}

int disableInputSourcesContaining(const std::string& lowercaseWord) {
    const objc::AutoreleasePool pool;
    const auto sources = objc::adopt(TISCreateInputSourceList(nullptr, 1));
    int count = 0;
    for (UInteger i = 0; sources && i < sources->count(); ++i) {
        TISInputSourceRef source = sources->objectAtIndex(i);
        if (lowercased(identifierOf(source)).find(lowercaseWord) != std::string::npos) {
            TISDisableInputSource(source);
            ++count;
        }
    }
    return count;
}

} // namespace platform
