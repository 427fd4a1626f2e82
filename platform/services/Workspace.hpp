#pragma once

#include <string>

namespace platform {

// What the desktop does for people. Both return at once and tell nobody whether it worked. Main
// thread.

/// Opens a web address in the default browser; nothing when it is no address.
void openAddress(const std::string& address);

/// Shows the file's folder with the file selected, as far as the desktop can select.
void revealFile(const std::string& path);

} // namespace platform
