#pragma once

#include "platform/base/PropertyListValue.hpp"
#include "platform/foundation/NSString.hpp"

#include <string>
#include <string_view>

namespace platform::foundation {

// Conversions between C++ and Foundation, in pairs. What they make is autoreleased; all may be
// called on any thread that has a pool.

/// Null when the text is not UTF-8.
[[nodiscard]] NSString* toNSString(std::string_view text);
/// Empty for null.
[[nodiscard]] std::string toString(const NSString* text);

/// Null when the value, or one inside it, is of no property-list type or not UTF-8, or when it has
/// more than 512 levels.
[[nodiscard]] NSObject* toFoundation(const PropertyListValue& value);
/// Null, an object of no property-list type and a dictionary with a key that is no string become
/// the value of no type, and so does the whole when it has more than 512 levels.
[[nodiscard]] PropertyListValue toPropertyListValue(NSObject* object);

} // namespace platform::foundation
