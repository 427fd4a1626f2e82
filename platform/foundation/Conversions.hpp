#pragma once

#include "platform/base/PropertyListValue.hpp"
#include "platform/foundation/NSString.hpp"

#include <string>
#include <string_view>

namespace platform::foundation {

// Conversions between C++ and Foundation, in pairs. The objects are autoreleased.

/// Null when the text is ill-formed UTF-8.
[[nodiscard]] NSString* toNSString(std::string_view text);
/// Empty for null.
[[nodiscard]] std::string toString(const NSString* text);

/// Null when the value, or one in it, is of no property-list type or ill-formed UTF-8, or when it
/// has more than 512 levels.
[[nodiscard]] NSObject* toFoundation(const PropertyListValue& value);
/// A value of no type for null, for an object of no property-list type, for a dictionary with a key
/// that is no string, and for anything with more than 512 levels.
[[nodiscard]] PropertyListValue toPropertyListValue(NSObject* object);

} // namespace platform::foundation
