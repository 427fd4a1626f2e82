#pragma once

#include "platform/objc/Runtime.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <type_traits>

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

/// The runtime's type encoding of a C++ type, at compile time. A structure states its own as a
/// specialisation beside its definition; any other type that is missing here does not compile.
template <class T>
struct Encoding;

template <FixedString Text>
struct EncodedAs {
    static constexpr auto value = Text;
};

template <>
struct Encoding<void> : EncodedAs<"v"> {};

template <>
struct Encoding<bool> : EncodedAs<"B"> {};

template <>
struct Encoding<char> : EncodedAs<"c"> {};

template <>
struct Encoding<unsigned char> : EncodedAs<"C"> {};

template <>
struct Encoding<short> : EncodedAs<"s"> {};

template <>
struct Encoding<unsigned short> : EncodedAs<"S"> {};

template <>
struct Encoding<int> : EncodedAs<"i"> {};

template <>
struct Encoding<unsigned int> : EncodedAs<"I"> {};

// Both 64-bit systems encode long and long long alike.
template <>
struct Encoding<long> : EncodedAs<"q"> {};

template <>
struct Encoding<unsigned long> : EncodedAs<"Q"> {};

template <>
struct Encoding<long long> : EncodedAs<"q"> {};

template <>
struct Encoding<unsigned long long> : EncodedAs<"Q"> {};

template <>
struct Encoding<float> : EncodedAs<"f"> {};

template <>
struct Encoding<double> : EncodedAs<"d"> {};

template <>
struct Encoding<id> : EncodedAs<"@"> {};

template <>
struct Encoding<Class> : EncodedAs<"#"> {};

template <>
struct Encoding<SEL> : EncodedAs<":"> {};

template <>
struct Encoding<char*> : EncodedAs<"*"> {};

template <>
struct Encoding<const char*> : EncodedAs<"r*"> {};

template <>
struct Encoding<void*> : EncodedAs<"^v"> {};

template <>
struct Encoding<const void*> : EncodedAs<"r^v"> {};

// A pointer to a facade is an object; a pointer to anything else encodes what it points to.
template <class T>
struct Encoding<T*> {
    static constexpr auto encode() {
        if constexpr (std::is_base_of_v<Object, std::remove_const_t<T>>) {
            return FixedString("@");
        } else if constexpr (std::is_const_v<T>) {
            return FixedString("r^") + Encoding<std::remove_const_t<T>>::value;
        } else {
            return FixedString("^") + Encoding<T>::value;
        }
    }

    static constexpr auto value = encode();
};

/// The encoding of a method: its result, the receiver, the selector, its arguments.
template <class Signature>
struct MethodEncoding;

template <class Result, class... Arguments>
struct MethodEncoding<Result(Arguments...)> {
    static constexpr auto receiver = Encoding<Result>::value + FixedString("@:");
    static constexpr auto value = (receiver + ... + Encoding<Arguments>::value);
};

} // namespace platform::objc
