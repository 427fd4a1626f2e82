#pragma once

#include "platform/appkit/AppKitObject.hpp"

namespace platform::appkit {

class NSMutableParagraphStyle : public NSObject {
  public:
    // clang-format off
    static NSMutableParagraphStyle* alloc() { return ClassMethod<"NSMutableParagraphStyle", "alloc", NSMutableParagraphStyle*()>::send(); }

    NSMutableParagraphStyle* init() { return InstanceMethod<"NSMutableParagraphStyle", "init", NSMutableParagraphStyle*()>::send(this); }
    void setAlignment(Integer alignment) { InstanceMethod<"NSMutableParagraphStyle", "setAlignment:", void(Integer)>::send(this, alignment); }

    // clang-format on
};

} // namespace platform::appkit
