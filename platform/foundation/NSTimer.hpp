#pragma once

#include "platform/foundation/NSString.hpp"

namespace platform::foundation {

class NSTimer : public NSObject {
  public:
    // clang-format off
    static NSTimer* timerWithTimeInterval(double seconds, NSObject* target, SEL action, NSObject* userInfo, bool repeats) { return ClassMethod<"NSTimer", "timerWithTimeInterval:target:selector:userInfo:repeats:", NSTimer*(double, NSObject*, SEL, NSObject*, Bool)>::send(seconds, target, action, userInfo, objc::toBool(repeats)); }

    void invalidate() { InstanceMethod<"NSTimer", "invalidate", void()>::send(this); }

    // clang-format on
};

class NSRunLoop : public NSObject {
  public:
    // clang-format off
    static NSRunLoop* currentRunLoop() { return ClassMethod<"NSRunLoop", "currentRunLoop", NSRunLoop*()>::send(); }

    void addTimer(NSTimer* timer, NSString* mode) { InstanceMethod<"NSRunLoop", "addTimer:forMode:", void(NSTimer*, NSString*)>::send(this, timer, mode); }

    // clang-format on
};

} // namespace platform::foundation
