#pragma once

#include "platform/objc/Method.hpp"

namespace platform::objc {

/// An autorelease pool of this thread, drained at the end. main, every thread and every callback
/// from a framework begin with one.
class AutoreleasePool {
  public:
    AutoreleasePool()
        : pool_(InstanceMethod<"NSAutoreleasePool", "init", id()>::send(
              ClassMethod<"NSAutoreleasePool", "alloc", id()>::send())) {}

    ~AutoreleasePool() { InstanceMethod<"NSAutoreleasePool", "drain", void()>::send(pool_); }

    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;

  private:
    id pool_;
};

} // namespace platform::objc
