#include "platform/services/AppleScript.hpp"

#include "platform/base/ChildProcess.hpp"
#include "platform/base/Utf8.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

namespace platform {

namespace {

// " (NUMBER)" at the end of a line.
struct NumberAtEnd {
    std::size_t start;
    std::string_view digits;
};

std::optional<NumberAtEnd> numberAtEndOf(std::string_view line) {
    line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
    const std::size_t start = line.rfind(" (");
    if (start == std::string_view::npos || !line.ends_with(')')) {
        return std::nullopt;
    }
    const std::string_view digits = line.substr(start + 2, line.size() - start - 3);
    const std::string_view unsignedDigits = digits.substr(digits.starts_with('-') ? 1 : 0);
    const bool isNumber =
        !unsignedDigits.empty() &&
        std::ranges::all_of(unsignedDigits, [](char c) { return c >= '0' && c <= '9'; });
    return isNumber ? std::optional(NumberAtEnd{start, digits}) : std::nullopt;
}

// That of the last line that ends in one; other lines may follow.
std::optional<NumberAtEnd> lastNumberAtEndOfLine(std::string_view text) {
    while (true) {
        const std::size_t lineStart = text.rfind('\n') + 1;
        if (const auto number = numberAtEndOf(text.substr(lineStart))) {
            return NumberAtEnd{lineStart + number->start, number->digits};
        }
        if (lineStart == 0) {
            return std::nullopt;
        }
        text = text.substr(0, lineStart - 1);
    }
}

std::optional<std::int64_t> integerOf(std::string_view digits) {
    std::int64_t number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return result.ec == std::errc() ? std::optional(number) : std::nullopt;
}

} // namespace

// The message may contain line breaks and brackets, and other programs may write to the same stream
// after it: it ends at the last line that ends in a number in brackets.
AppleScriptError parseOsascriptError(std::string_view standardError) {
    constexpr std::string_view marker = "execution error: ";
    const std::size_t start = standardError.find(marker);
    if (start == std::string_view::npos) {
        return {};
    }
    const std::string_view text = standardError.substr(start + marker.size());
    const auto number = lastNumberAtEndOfLine(text);
    if (!number) {
        return {};
    }
    return {repairedUtf8(text.substr(0, number->start)), integerOf(number->digits)};
}

AppleScriptOutcome runAppleScript(const std::string& source) {
    const std::array<std::string, 2> arguments{"-e", source};
    try {
        const ChildResult ended = spawnAndWait({.executablePath = "/usr/bin/osascript",
                                                .arguments = arguments,
                                                .standardInput = std::nullopt,
                                                .collected = ChildOutput::errorsOnly});
        if (ended.terminationStatus == 0) {
            return {};
        }
        return {.created = true, .error = parseOsascriptError(ended.output)};
    } catch (const std::system_error&) {
        return {.created = false, .error = std::nullopt};
    }
}

} // namespace platform
