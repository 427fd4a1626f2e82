#pragma once

#include "platform/foundation/NSString.hpp"

namespace platform::foundation {

class NSURL : public NSObject {
  public:
    // clang-format off
    /// Null when the text is no address.
    static NSURL* URLWithString(NSString* text) { return ClassMethod<"NSURL", "URLWithString:", NSURL*(NSString*)>::send(text); }
    static NSURL* fileURLWithPath(NSString* path) { return ClassMethod<"NSURL", "fileURLWithPath:", NSURL*(NSString*)>::send(path); }

    // clang-format on
};

} // namespace platform::foundation
