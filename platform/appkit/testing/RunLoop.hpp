#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/foundation/NSTimer.hpp"
#include "platform/objc/AutoreleasePool.hpp"

namespace platform::appkit::testing {

/// Runs the run loop in one of its modes until the condition holds, for twenty seconds at most;
/// whether it holds. Main thread.
template <class Condition>
[[nodiscard]] bool served(Condition condition, NSString* mode = NSDefaultRunLoopMode) {
    using DateIn = ClassMethod<"NSDate", "dateWithTimeIntervalSinceNow:", NSObject*(double)>;
    using SecondsUntil = InstanceMethod<"NSDate", "timeIntervalSinceNow", double()>;
    using RunMode = InstanceMethod<"NSRunLoop", "runMode:beforeDate:", Bool(NSString*, NSObject*)>;
    const objc::AutoreleasePool pool;
    NSObject* limit = DateIn::send(20);
    while (!condition() && SecondsUntil::send(limit) > 0) {
        const objc::AutoreleasePool turn;
        RunMode::send(foundation::NSRunLoop::currentRunLoop(), mode, DateIn::send(0.02));
    }
    return condition();
}

} // namespace platform::appkit::testing
