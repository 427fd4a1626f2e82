// Any path survives quoting for AppleScript's string literal and a real shell.

#include "kovraUninstaller/engine/PrivilegedRunner.hpp"
#include "platform/base/ChildProcess.hpp"
#include "tests/fuzz/FuzzTarget.hpp"

#include <array>
#include <string>

namespace {

// The shell command in `do shell script "LITERAL" with administrator privileges`.
std::string commandInSource(std::string_view source) {
    constexpr std::string_view before = "do shell script \"";
    constexpr std::string_view after = "\" with administrator privileges";
    require(source.starts_with(before) && source.ends_with(after), "the source has this form");
    source.remove_prefix(before.size());
    source.remove_suffix(after.size());
    std::string text;
    for (std::size_t i = 0; i < source.size(); ++i) {
        require(source[i] != '"', "no unescaped quote ends the literal early");
        if (source[i] == '\\') {
            ++i;
            require(i < source.size() && (source[i] == '\\' || source[i] == '"'),
                    "every backslash escapes a backslash or a quote");
        }
        text += source[i];
    }
    return text;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string path(asText(bytes, size));
    std::erase(path, '\0'); // not possible in a path
    const std::string command = commandInSource(kovra::administratorScriptSource(path));
    constexpr std::string_view runner = "/bin/bash ";
    require(command.starts_with(runner), "bash runs the script");
    const std::array<std::string, 2> arguments{"-c",
                                               "printf '%s' " + command.substr(runner.size())};
    const auto printed = platform::spawnAndWait(
        {.executablePath = "/bin/sh", .arguments = arguments, .standardInput = std::nullopt});
    require(printed.terminationStatus == 0 && printed.output == path,
            "a shell gets the path back, byte for byte");
    return 0;
}
