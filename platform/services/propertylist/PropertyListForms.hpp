#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform::propertylist {

/// The value of an XML property list; nothing when the bytes are not one from end to end, or nest
/// deeper than any real one.
[[nodiscard]] std::optional<PropertyListValue> readXml(std::string_view bytes);

[[nodiscard]] bool isBinary(std::string_view bytes);

/// The value of a property list in the binary form, version 00; nothing when a table, an offset
/// or an object lies outside the bytes, or when the objects nest deeper than any real list, as
/// ones that hold themselves do.
[[nodiscard]] std::optional<PropertyListValue> readBinary(std::string_view bytes);

/// See `serializeXmlPropertyList`.
[[nodiscard]] std::optional<std::string> writeXml(const PropertyListValue& value);

} // namespace platform::propertylist
