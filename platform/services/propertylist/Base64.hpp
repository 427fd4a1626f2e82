#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform::propertylist {

[[nodiscard]] std::string encodeBase64(const PropertyListValue::Data& data);

/// White space is passed over; nothing when any other character is foreign to the alphabet.
[[nodiscard]] std::optional<PropertyListValue::Data> decodeBase64(std::string_view text);

} // namespace platform::propertylist
