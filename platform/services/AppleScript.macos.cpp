#include "platform/services/AppleScript.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/FoundationSymbols.hpp"
#include "platform/foundation/NSAppleScript.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/objc/AutoreleasePool.hpp"

namespace platform {

using namespace foundation;

namespace {

// The number as an integer; nothing when it has a fraction or is out of range.
std::optional<std::int64_t> integerOf(const NSNumber* number) {
    const std::int64_t integer = number->longLongValue();
    return number->doubleValue() == static_cast<double>(integer) ? std::optional(integer)
                                                                 : std::nullopt;
}

AppleScriptError errorIn(const NSDictionary* information) {
    AppleScriptError error;
    if (const auto* message = kindOf<NSString>(information->objectForKey(NSAppleScriptErrorMessage),
                                               objc::classNamed<"NSString">())) {
        error.message = toString(message);
    }
    if (const auto* number = kindOf<NSNumber>(information->objectForKey(NSAppleScriptErrorNumber),
                                              objc::classNamed<"NSNumber">())) {
        error.number = integerOf(number);
    }
    return error;
}

} // namespace

AppleScriptOutcome runAppleScript(const std::string& source) {
    const objc::AutoreleasePool pool;
    NSString* text = toNSString(source);
    const auto script =
        objc::adopt(text == nullptr ? nullptr : NSAppleScript::alloc()->initWithSource(text));
    if (!script) {
        return {.created = false, .error = std::nullopt};
    }
    NSDictionary* information = nullptr;
    script->executeAndReturnError(&information);
    if (information == nullptr) {
        return {};
    }
    return {.created = true, .error = errorIn(information)};
}

} // namespace platform
