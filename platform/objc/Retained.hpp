#pragma once

#include "platform/objc/Method.hpp"

#include <utility>

namespace platform::objc {

/// Owns one reference to an object, or null. Made only by `adopt` and `retain`, so that each use
/// says where the reference comes from.
template <class T>
class [[nodiscard]] Retained {
  public:
    Retained() = default;

    Retained(const Retained& other) : object_(retained(other.object_)) {}

    Retained(Retained&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}

    Retained& operator=(Retained other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    ~Retained() { InstanceMethod<"NSObject", "release", void()>::send(object_); }

    [[nodiscard]] T* get() const { return object_; }

    T* operator->() const { return object_; }

    /// Passes the reference to the caller, who has to release it.
    [[nodiscard]] T* release() { return std::exchange(object_, nullptr); }

    [[nodiscard]] explicit operator bool() const { return object_ != nullptr; }

  private:
    explicit Retained(T* owned) : object_(owned) {}

    static T* retained(T* object) {
        return reinterpret_cast<T*>(InstanceMethod<"NSObject", "retain", id()>::send(object));
    }

    template <class U>
    friend Retained<U> adopt(U* owned);
    template <class U>
    friend Retained<U> retain(U* borrowed);

    T* object_ = nullptr;
};

/// Takes over a reference that the caller owns: what alloc, new and copy return.
template <class T>
[[nodiscard]] Retained<T> adopt(T* owned) {
    return Retained<T>(owned);
}

/// Adds a reference to an object with another owner.
template <class T>
[[nodiscard]] Retained<T> retain(T* borrowed) {
    return Retained<T>(Retained<T>::retained(borrowed));
}

/// The object; its reference passes to the current autorelease pool.
template <class T>
[[nodiscard]] T* autoreleased(Retained<T> owned) {
    T* object = owned.get();
    InstanceMethod<"NSObject", "autorelease", id()>::send(object);
    return owned.release();
}

} // namespace platform::objc
