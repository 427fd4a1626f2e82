#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace practice {

/// The shell command of a source of the one form
///   do shell script "COMMAND" with administrator privileges
/// its string literal's escapes resolved; nothing for any other source.
std::optional<std::string> administratorCommand(std::string_view source);

} // namespace practice
