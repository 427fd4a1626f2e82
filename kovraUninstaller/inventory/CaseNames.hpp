#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace kovra {

/// The cases of an enumeration, each with its raw value, in declaration order. An enumeration
/// with raw values specialises it with a `static constexpr` array of pairs called `table`.
template <typename Enumeration>
struct CaseNames;

/// The raw value of a case; it lives for the whole program. Any thread.
template <typename Enumeration>
[[nodiscard]] constexpr std::string_view rawValue(Enumeration value) {
    for (const auto& [candidate, name] : CaseNames<Enumeration>::table) {
        if (candidate == value) {
            return name;
        }
    }
    return {};
}

/// The case with exactly this raw value; nothing for any other text. Any thread.
template <typename Enumeration>
[[nodiscard]] constexpr std::optional<Enumeration> fromRawValue(std::string_view name) {
    for (const auto& [candidate, candidateName] : CaseNames<Enumeration>::table) {
        if (candidateName == name) {
            return candidate;
        }
    }
    return std::nullopt;
}

/// All cases, in declaration order.
template <typename Enumeration>
inline constexpr auto allCases = [] {
    std::array<Enumeration, CaseNames<Enumeration>::table.size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i) {
        cases[i] = CaseNames<Enumeration>::table[i].first;
    }
    return cases;
}();

} // namespace kovra
