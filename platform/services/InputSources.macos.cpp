#include "platform/services/InputSources.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSDictionary.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/SystemSymbols.macos.hpp"
#include "platform/services/TextCase.hpp"

namespace platform {

namespace {

using namespace foundation;

objc::Retained<NSArray> installedSources(const NSDictionary* filter) {
    return objc::adopt(
        toFacade<NSArray>(TISCreateInputSourceList(toReference<CFDictionaryRef>(filter), 1)));
}

// Null when the system returns no array.
objc::Retained<NSArray> sourcesWith(CFStringRef property, const std::string& value) {
    auto* filter = NSMutableDictionary::dictionaryWithCapacity(1);
    filter->setObject(toNSString(value), toFacade<NSString>(property));
    auto list = installedSources(filter);
    const bool isList = list && list->isKindOfClass(objc::classNamed<"NSArray">());
    return isList ? list : objc::Retained<NSArray>();
}

TISInputSourceRef sourceAt(NSArray* sources, UInteger index) {
    return toReference<TISInputSourceRef>(sources->objectAtIndex(index));
}

std::string identifierOf(TISInputSourceRef source) {
    void* identifier = TISGetInputSourceProperty(source, kTISPropertyInputSourceID);
    return toString(
        kindOf<NSString>(toFacade<NSObject>(identifier), objc::classNamed<"NSString">()));
}

} // namespace

int inputSourceCount(const std::string& bundleIdentifier) {
    const objc::AutoreleasePool pool;
    const auto sources = sourcesWith(kTISPropertyBundleID, bundleIdentifier);
    return sources ? static_cast<int>(sources->count()) : 0;
}

std::optional<std::string> currentInputSourceIdentifier() {
    const objc::AutoreleasePool pool;
    TISInputSourceRef current = TISCopyCurrentKeyboardInputSource();
    if (current == nullptr) {
        return std::nullopt;
    }
    const auto owner = objc::adopt(toFacade<NSObject>(current));
    return identifierOf(current);
}

bool selectInputSource(const std::string& identifier) {
    const objc::AutoreleasePool pool;
    const auto sources = sourcesWith(kTISPropertyInputSourceID, identifier);
    if (!sources || sources->count() == 0) {
        return false;
    }
    TISSelectInputSource(sourceAt(sources.get(), 0));
    return true;
}

int disableInputSourcesContaining(const std::string& lowercaseWord) {
    const objc::AutoreleasePool pool;
    const auto sources = installedSources(nullptr);
    int count = 0;
    for (UInteger i = 0; sources && i < sources->count(); ++i) {
        TISInputSourceRef source = sourceAt(sources.get(), i);
        if (lowercased(identifierOf(source)).find(lowercaseWord) != std::string::npos) {
            TISDisableInputSource(source);
            ++count;
        }
    }
    return count;
}

} // namespace platform
