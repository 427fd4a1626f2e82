#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The value of a property list in XML or binary form; nothing when the bytes are not one from end
/// to end, or have more than 512 levels. Takes any bytes.
[[nodiscard]] std::optional<PropertyListValue> parsePropertyList(std::string_view bytes);

/// The value as an XML property list, version 1.0; nothing when it, or a value in it, is of no
/// property-list type or cannot be represented in XML. Dates are rounded down to the second.
[[nodiscard]] std::optional<std::string> serializeXmlPropertyList(const PropertyListValue& value);

} // namespace platform
