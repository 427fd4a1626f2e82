#pragma once

#include "platform/foundation/NSData.hpp"
#include "platform/foundation/NSObject.hpp"

namespace platform::foundation {

class NSPropertyListSerialization : public NSObject {
  public:
    static constexpr UInteger xmlFormat = 100;
    static constexpr UInteger binaryFormat = 200;

    // clang-format off
    /// Null when the value holds what a property list may not.
    static NSData* dataWithPropertyList(NSObject* value, UInteger format) { return ClassMethod<"NSPropertyListSerialization", "dataWithPropertyList:format:options:error:", NSData*(NSObject*, UInteger, UInteger, NSObject**)>::send(value, format, 0, nullptr); }
    /// Null when the bytes are no property list.
    static NSObject* propertyListWithData(NSData* data) { return ClassMethod<"NSPropertyListSerialization", "propertyListWithData:options:format:error:", NSObject*(NSData*, UInteger, UInteger*, NSObject**)>::send(data, 0, nullptr, nullptr); }

    // clang-format on
};

} // namespace platform::foundation
