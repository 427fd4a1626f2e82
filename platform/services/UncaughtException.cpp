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

struct Free {
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

// Any object may be thrown; of one that is no NSException only the class is known.
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
    const std::unique_ptr<char, Free> readable(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status));
    return readable ? readable.get() : type.name();
}

// The current call stack; after a catch at a boundary, that of the catch clause.
std::vector<std::string> currentStack() {
    std::array<void*, 64> calls{};
    const int count = ::backtrace(calls.data(), static_cast<int>(calls.size()));
    const std::unique_ptr<char*, Free> symbols(::backtrace_symbols(calls.data(), count));
    return symbols ? std::vector<std::string>(symbols.get(), symbols.get() + count)
                   : std::vector<std::string>();
}

std::optional<std::string> whatOfCurrentException() {
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
    // Describing an exception may throw as well, which must not recurse.
    static thread_local bool isReporting = false;
    if (std::exchange(isReporting, true)) {
        return;
    }
    if (NSObject* object = caughtObject()) {
        report(described(object));
    } else if (std::current_exception() != nullptr) {
        report({readableName(*abi::__cxa_current_exception_type()), whatOfCurrentException(),
                currentStack()});
    }
}

[[noreturn]] void reportAndAbort() noexcept {
    reportCaught();
    std::abort();
}

// Called by Foundation when no catch clause of ours is on the stack, for any object. What it does
// afterwards differs between the systems, so this aborts.
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
