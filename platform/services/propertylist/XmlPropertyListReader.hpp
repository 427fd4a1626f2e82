#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <optional>
#include <string_view>

namespace platform::propertylist {

/// The value of an XML property list; nothing when the bytes are not one from end to end, or nest
/// deeper than any real one.
[[nodiscard]] std::optional<PropertyListValue> readXml(std::string_view bytes);

} // namespace platform::propertylist
