#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSBitmapImageRep : public NSObject {
  public:
    static constexpr UInteger filePng = 4;

    // clang-format off
    [[nodiscard]] Integer pixelsWide() const { return InstanceMethod<"NSBitmapImageRep", "pixelsWide", Integer()>::send(this); }
    [[nodiscard]] Integer pixelsHigh() const { return InstanceMethod<"NSBitmapImageRep", "pixelsHigh", Integer()>::send(this); }
    [[nodiscard]] NSData* representationUsingType(UInteger type, NSDictionary* properties) const { return InstanceMethod<"NSBitmapImageRep", "representationUsingType:properties:", NSData*(UInteger, NSDictionary*)>::send(this, type, properties); }

    // clang-format on
};

} // namespace platform::appkit
