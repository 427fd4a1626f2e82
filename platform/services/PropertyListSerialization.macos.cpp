#include "platform/services/PropertyListSerialization.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSPropertyListSerialization.hpp"
#include "platform/objc/AutoreleasePool.hpp"

#include <utility>

namespace platform {

using namespace foundation;

std::optional<PropertyListValue> parsePropertyList(std::string_view bytes) {
    const objc::AutoreleasePool pool;
    NSData* data = NSData::dataWithBytesNoCopy(const_cast<char*>(bytes.data()), bytes.size());
    auto value = toPropertyListValue(NSPropertyListSerialization::propertyListWithData(data));
    return value == PropertyListValue() ? std::nullopt : std::optional(std::move(value));
}

std::optional<std::string> serializeXmlPropertyList(const PropertyListValue& value) {
    const objc::AutoreleasePool pool;
    NSObject* object = toFoundation(value);
    const NSData* data = object == nullptr ? nullptr
                                           : NSPropertyListSerialization::dataWithPropertyList(
                                                 object, NSPropertyListSerialization::xmlFormat);
    if (data == nullptr) {
        return std::nullopt;
    }
    return std::string(static_cast<const char*>(data->bytes()), data->length());
}

} // namespace platform
