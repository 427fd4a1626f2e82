#pragma once

#include "platform/objc/Method.hpp"

namespace platform::objc {

/// Frees what is autoreleased on this thread while it lives. One stands first in main, in each
/// thread and in each callback.
class AutoreleasePool {
  public:
    AutoreleasePool()
        : pool(InstanceMethod<"NSAutoreleasePool", "init", id()>::send(
              ClassMethod<"NSAutoreleasePool", "alloc", id()>::send())) {}

    ~AutoreleasePool() { InstanceMethod<"NSAutoreleasePool", "drain", void()>::send(pool); }

    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;

  private:
    id pool;
};

} // namespace platform::objc
