#include "platform/appkit/RepeatingTimer.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/objc/ClassBuilder.hpp"

#include <utility>

namespace platform::appkit {

using foundation::NSObject;
using foundation::NSRunLoop;
using foundation::NSString;
using foundation::NSTimer;

namespace {

constexpr double interval = 1.0 / 60;
constexpr const char* tickVariable = "tick";

void timerFired(NSObject* target, NSTimer*) {
    const auto* tick =
        static_cast<const std::function<void()>*>(objc::pointerVariable(target, tickVariable));
    (*tick)();
}

Class targetClass() {
    static const Class made = objc::ClassBuilder("KovraTimerTarget", "NSObject")
                                  .pointerVariable(tickVariable)
                                  .method<timerFired>("timerFired:")
                                  .registered();
    return made;
}

} // namespace

RepeatingTimer::RepeatingTimer(std::function<void()> tick)
    : tick_(std::move(tick)),
      target_(objc::adopt(objc::sendMessage<NSObject*>(targetClass(), objc::selector<"new">()))) {
    objc::setPointerVariable(target_.get(), tickVariable, &tick_);
}

RepeatingTimer::~RepeatingTimer() {
    stop();
}

// GNUstep does not fire timers of NSRunLoopCommonModes, so the timer is added to each mode.
void RepeatingTimer::start() {
    if (isRunning()) {
        return;
    }
    timer_ = objc::retain(NSTimer::timerWithTimeInterval(
        interval, target_.get(), objc::selector<"timerFired:">(), nullptr, true));
    for (NSString* mode :
         {NSDefaultRunLoopMode, NSEventTrackingRunLoopMode, NSModalPanelRunLoopMode}) {
        NSRunLoop::currentRunLoop()->addTimer(timer_.get(), mode);
    }
}

void RepeatingTimer::stop() {
    if (isRunning()) {
        timer_->invalidate();
        timer_ = {};
    }
}

} // namespace platform::appkit
