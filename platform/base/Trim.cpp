#include "platform/base/Trim.hpp"

#include <algorithm>
#include <array>

namespace platform {

namespace {

// Unicode's separators and line ends, each in UTF-8.
constexpr std::array<std::string_view, 25> whiteSpace{
    " ",
    "\t",
    "\n",
    "\v",
    "\f",
    "\r",
    "\xC2\x85",
    "\xC2\xA0",
    "\xE1\x9A\x80",
    "\xE2\x80\x80",
    "\xE2\x80\x81",
    "\xE2\x80\x82",
    "\xE2\x80\x83",
    "\xE2\x80\x84",
    "\xE2\x80\x85",
    "\xE2\x80\x86",
    "\xE2\x80\x87",
    "\xE2\x80\x88",
    "\xE2\x80\x89",
    "\xE2\x80\x8A",
    "\xE2\x80\xA8",
    "\xE2\x80\xA9",
    "\xE2\x80\xAF",
    "\xE2\x81\x9F",
    "\xE3\x80\x80",
};

constexpr std::array<std::string_view, 2> blanks{" ", "\t"};

template <std::size_t Count>
std::string_view without(const std::array<std::string_view, Count>& characters,
                         std::string_view text) {
    const auto* const none = characters.end();
    const auto first = [&] {
        return std::ranges::find_if(characters, [&](auto c) { return text.starts_with(c); });
    };
    const auto last = [&] {
        return std::ranges::find_if(characters, [&](auto c) { return text.ends_with(c); });
    };
    for (const auto* found = first(); found != none; found = first()) {
        text.remove_prefix(found->size());
    }
    for (const auto* found = last(); found != none; found = last()) {
        text.remove_suffix(found->size());
    }
    return text;
}

} // namespace

std::string_view trimmed(std::string_view text) {
    return without(whiteSpace, text);
}

std::string_view trimmedOfBlanks(std::string_view text) {
    return without(blanks, text);
}

} // namespace platform
