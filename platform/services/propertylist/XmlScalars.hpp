#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform::propertylist {

[[nodiscard]] std::string encodeBase64(const PropertyListValue::Data& data);

/// White space is passed over; nothing when any other character is foreign to the alphabet.
[[nodiscard]] std::optional<PropertyListValue::Data> decodeBase64(std::string_view text);

/// "2025-03-14T09:26:53Z", to the second, earlier ones rounded down; nothing for a moment outside
/// the years 0 to 9999. Any thread.
[[nodiscard]] std::optional<std::string> formatDate(PropertyListValue::Date date);

/// The reverse; nothing for any other form.
[[nodiscard]] std::optional<PropertyListValue::Date> parseDate(std::string_view text);

} // namespace platform::propertylist
