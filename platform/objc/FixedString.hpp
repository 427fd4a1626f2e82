#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace platform::objc {

/// Text that can be a template argument and be joined at compile time.
template <std::size_t Size>
struct FixedString {
    char characters[Size + 1] = {};

    constexpr FixedString() = default;

    constexpr FixedString(const char (&literal)[Size + 1]) {
        std::copy_n(literal, Size, characters);
    }

    [[nodiscard]] constexpr std::string_view view() const { return {characters, Size}; }

    template <std::size_t Other>
    constexpr FixedString<Size + Other> operator+(const FixedString<Other>& other) const {
        FixedString<Size + Other> joined;
        std::copy_n(characters, Size, joined.characters);
        std::copy_n(other.characters, Other, joined.characters + Size);
        return joined;
    }
};

template <std::size_t SizeWithEnd>
FixedString(const char (&)[SizeWithEnd]) -> FixedString<SizeWithEnd - 1>;

} // namespace platform::objc
