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

/// All cases, in declaration order. A table in any other order does not compile.
template <typename Enumeration>
inline constexpr auto allCases = [] {
    constexpr auto& table = CaseNames<Enumeration>::table;
    std::array<Enumeration, table.size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i) {
        cases[i] = static_cast<Enumeration>(i);
    }
    static_assert([] {
        for (std::size_t i = 0; i < table.size(); ++i) {
            if (table[i].first != static_cast<Enumeration>(i)) {
                return false;
            }
        }
        return true;
    }());
    return cases;
}();

} // namespace kovra
