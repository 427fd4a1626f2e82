#pragma once

#include <string>

namespace platform {

/// The current user's home folder, read anew at each call; ends in no slash, unless it is the root.
/// Any thread.
[[nodiscard]] std::string homeDirectory();

/// The current user's folder for temporary files; ends in a slash. Any thread.
[[nodiscard]] std::string temporaryDirectory();

} // namespace platform
