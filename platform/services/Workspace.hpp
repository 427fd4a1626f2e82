#pragma once

#include <string>

namespace platform {

// Requests to the desktop. Both return at once and report no failure. Main thread.

/// Opens a URL in the default browser; does nothing when it is none.
void openAddress(const std::string& address);

/// Shows the file's folder, with the file selected where the desktop can do that.
void revealFile(const std::string& path);

} // namespace platform
