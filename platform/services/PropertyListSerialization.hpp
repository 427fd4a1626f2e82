#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The value that the bytes hold, as XML or in the binary form; nothing when they are no whole
/// property list, or one of more than 512 levels. Takes any bytes. Any thread.
[[nodiscard]] std::optional<PropertyListValue> parsePropertyList(std::string_view bytes);

/// The value as an XML property list, version 1.0; nothing when it, or a value inside it, is of
/// no property-list type or cannot stand in XML. Moments are written to the second. Any thread.
[[nodiscard]] std::optional<std::string> serializeXmlPropertyList(const PropertyListValue& value);

} // namespace platform
