#pragma once

#include "platform/foundation/NSObject.hpp"
#include "platform/objc/Encoding.hpp"

namespace platform::foundation {

struct NSOperatingSystemVersion {
    Integer majorVersion;
    Integer minorVersion;
    Integer patchVersion;
};

class NSProcessInfo : public NSObject {
  public:
    // clang-format off
    static NSProcessInfo* processInfo() { return ClassMethod<"NSProcessInfo", "processInfo", NSProcessInfo*()>::send(); }

    [[nodiscard]] NSOperatingSystemVersion operatingSystemVersion() const { return InstanceMethod<"NSProcessInfo", "operatingSystemVersion", NSOperatingSystemVersion()>::send(this); }

    // clang-format on
};

} // namespace platform::foundation

// The system's name for the structure carries no tag.
template <>
struct platform::objc::Encoding<platform::foundation::NSOperatingSystemVersion>
    : platform::objc::EncodedAs<"{?=qqq}"> {};
