#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <limits>

namespace platform::testing {

/// A value with every type, the limits of its range, and keys and strings of every kind that a
/// property list can hold.
inline PropertyListValue samplePropertyList() {
    using Value = PropertyListValue;
    const auto bytes = [](std::initializer_list<int> numbers) {
        Value::Data data;
        for (const int number : numbers) {
            data.push_back(static_cast<std::byte>(number));
        }
        return data;
    };
    return Value::Dictionary{
        {"truth", Value::Array{true, false}},
        {"whole",
         Value::Array{0, 1, -1, 255, 256, 65535, 65536, std::int64_t{4294967295},
                      std::int64_t{4294967296}, -30768, std::numeric_limits<std::int64_t>::min(),
                      std::numeric_limits<std::int64_t>::max()}},
        {"beyond",
         Value::Array{std::uint64_t{1} << 63U, std::numeric_limits<std::uint64_t>::max()}},
        {"real", Value::Array{0.0, 1.0, -0.5, 0.1, 1e300, 5e-324, 3.141592653589793}},
        {"date", Value::Array{Value::Date{0}, Value::Date{763637213}, Value::Date{-978307200}}},
        {"data", Value::Array{bytes({}), bytes({0}), bytes({1, 2}), bytes({0xFF, 0, 0x7F}),
                              bytes({0x6B, 0x6F, 0x76, 0x72, 0x61})}},
        {"text", Value::Array{"", " ", "plain", "\n\ttabbed \n", "<&>\"'", "]]>", "Grüße", "日本語",
                              "🎉𝄞", "\u212A", "\uFFFD"}},
        {"", "an empty key"},
        {"key <&> 🎉\n", Value::Dictionary{}},
        {"nested", Value::Array{Value::Array{}, Value::Dictionary{{"a", Value::Array{1, "b"}}}}},
    };
}

} // namespace platform::testing
