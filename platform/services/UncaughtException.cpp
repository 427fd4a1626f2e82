#include "platform/services/UncaughtException.hpp"

#include "platform/base/Utf8.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/FoundationSymbols.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/Runtime.hpp"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <execinfo.h>
#include <memory>
#include <typeinfo>

namespace platform {

namespace {

using namespace foundation;

std::atomic<UncaughtExceptionHandler> registered = nullptr;

struct Freed {
    void operator()(void* memory) const { std::free(memory); }
};

std::vector<std::string> textsIn(const NSArray* array) {
    std::vector<std::string> texts;
    for (UInteger i = 0; array != nullptr && i < array->count(); ++i) {
        const auto* text =
            kindOf<NSString>(array->objectAtIndex(i), objc::classNamed<"NSString">());
        texts.push_back(toString(text));
    }
    return texts;
}

// Any object may be thrown; one that is no exception has a class and nothing else to tell.
UncaughtException described(NSObject* object) {
    const objc::AutoreleasePool pool;
    const auto* exception = kindOf<NSException>(object, objc::classNamed<"NSException">());
    if (exception == nullptr) {
        return {objc::classNameOf(object), std::nullopt, {}};
    }
    UncaughtException known{toString(exception->name()), std::nullopt,
                            textsIn(exception->callStackSymbols())};
    if (const NSString* reason = exception->reason()) {
        known.reason = toString(reason);
    }
    return known;
}

std::string readableName(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, Freed> readable(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status));
    return readable ? readable.get() : type.name();
}

// The stack as it is now. Where the exception was caught on its way out, that is the catcher's.
std::vector<std::string> currentStack() {
    std::array<void*, 64> calls{};
    const int count = ::backtrace(calls.data(), static_cast<int>(calls.size()));
    const std::unique_ptr<char*, Freed> symbols(::backtrace_symbols(calls.data(), count));
    return symbols ? std::vector<std::string>(symbols.get(), symbols.get() + count)
                   : std::vector<std::string>();
}

std::optional<std::string> whatItSays() {
    try {
        throw;
    } catch (const std::exception& exception) {
        return repairedUtf8(exception.what());
    } catch (...) {
        return std::nullopt;
    }
}

void report(const UncaughtException& exception) noexcept {
    if (const UncaughtExceptionHandler handler = registered) {
        handler(exception);
    }
}

void reportCaught() noexcept {
    // Describing an exception may itself fail; that must not begin all over again.
    static thread_local bool isReporting = false;
    if (std::exchange(isReporting, true)) {
        return;
    }
    if (NSObject* object = caughtObject()) {
        report(described(object));
    } else if (std::current_exception() != nullptr) {
        report({readableName(*abi::__cxa_current_exception_type()), whatItSays(), currentStack()});
    }
}

[[noreturn]] void reportAndAbort() noexcept {
    reportCaught();
    std::abort();
}

// The system asks for this where none of our code is on the stack to catch anything, whatever was
// thrown. What it does afterwards differs, so the end is made here.
void reportUncaughtObject(NSException* object) {
    report(described(object));
    std::abort();
}

} // namespace

void setUncaughtExceptionHandler(UncaughtExceptionHandler handler) {
    registered = handler;
    objc::setFailureHandler(reportCaught);
    setTerminateHandler(reportAndAbort);
    NSSetUncaughtExceptionHandler(reportUncaughtObject);
}

} // namespace platform
