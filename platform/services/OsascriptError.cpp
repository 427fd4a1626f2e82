#include "platform/services/OsascriptError.hpp"

#include "platform/base/Trim.hpp"
#include "platform/base/Utf8.hpp"

#include <charconv>

namespace platform {

// The message may hold anything, line breaks and brackets included: it ends at the last bracket.
AppleScriptError parseOsascriptError(std::string_view standardError) {
    constexpr std::string_view marker = "execution error: ";
    const std::string_view text = trimmed(standardError);
    const std::size_t start = text.find(marker);
    const std::size_t bracket = text.rfind(" (");
    if (start == std::string_view::npos || bracket == std::string_view::npos ||
        bracket < start + marker.size() || !text.ends_with(')')) {
        return {};
    }
    const std::string_view digits = text.substr(bracket + 2, text.size() - bracket - 3);
    int number = 0;
    const auto [end, failure] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (failure != std::errc() || end != digits.data() + digits.size()) {
        return {};
    }
    const std::size_t messageStart = start + marker.size();
    return {repairedUtf8(text.substr(messageStart, bracket - messageStart)), number};
}

} // namespace platform
