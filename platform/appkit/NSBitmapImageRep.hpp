#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSBitmapImageRep : public NSObject {
  public:
    static constexpr UInteger filePng = 4;

    // clang-format off
    [[nodiscard]] NSData* representationUsingType(UInteger type, NSDictionary* properties) const { return InstanceMethod<"NSBitmapImageRep", "representationUsingType:properties:", NSData*(UInteger, NSDictionary*)>::send(this, type, properties); }

    // clang-format on
};

} // namespace platform::appkit
