#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform::propertylist {

// Our own readers of both forms of property lists, on Linux alone.
//
// libplist cannot take our place. Versions 2.2 and 2.6 fail our tests: they accept a list that is
// followed by other text or by a second list, keys without values, malformed numbers, dates and
// data, numbers out of range, bytes that are not UTF-8, and entity declarations. They ignore the
// declared encoding, refuse a byte order mark, cut binary strings and keys at a NUL byte, drop
// unpaired surrogates, and keep dates in 32 bits. A small binary list that refers to the same
// objects many times over keeps them busy without bound. 2.2 also reads negative integers as
// unsigned ones.

/// The value of an XML property list; nothing when the bytes are not one from end to end, or are
/// nested deeper than 512 levels.
[[nodiscard]] std::optional<PropertyListValue> readXml(std::string_view bytes);

/// Whether the bytes begin like the binary form, version 00.
[[nodiscard]] bool isBinary(std::string_view bytes);

/// The value of a property list in the binary form; nothing when a table, an offset or an object is
/// out of bounds, when objects are nested deeper than 512 levels, as cyclic ones are, or when
/// shared objects would expand to far more memory than the bytes take.
[[nodiscard]] std::optional<PropertyListValue> readBinary(std::string_view bytes);

// The text of data and dates in XML property lists.

[[nodiscard]] std::string encodeBase64(const PropertyListValue::Data& data);

/// Ignores white space; nothing when there is any other character that is not Base64.
[[nodiscard]] std::optional<PropertyListValue::Data> decodeBase64(std::string_view text);

/// "2025-03-14T09:26:53Z", rounded down to the second; nothing outside the years 0 to 9999.
[[nodiscard]] std::optional<std::string> formatDate(PropertyListValue::Date date);

/// The date of such a text; nothing for any other form.
[[nodiscard]] std::optional<PropertyListValue::Date> parseDate(std::string_view text);

} // namespace platform::propertylist
