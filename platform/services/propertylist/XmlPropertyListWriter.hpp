#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <optional>
#include <string>

namespace platform::propertylist {

/// See `serializeXmlPropertyList`.
[[nodiscard]] std::optional<std::string> writeXml(const PropertyListValue& value);

} // namespace platform::propertylist
