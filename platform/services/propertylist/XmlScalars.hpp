#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform::propertylist {

// The text of data and dates in XML property lists. Any thread.

[[nodiscard]] std::string encodeBase64(const PropertyListValue::Data& data);

/// Ignores white space; nothing when there is any other character that is not Base64.
[[nodiscard]] std::optional<PropertyListValue::Data> decodeBase64(std::string_view text);

/// "2025-03-14T09:26:53Z", rounded down to the second; nothing outside the years 0 to 9999.
[[nodiscard]] std::optional<std::string> formatDate(PropertyListValue::Date date);

/// The date of such a text; nothing for any other form.
[[nodiscard]] std::optional<PropertyListValue::Date> parseDate(std::string_view text);

} // namespace platform::propertylist
