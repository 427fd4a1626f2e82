#pragma once

namespace practice {

/// Shows the system's password dialog in the middle of the screen, on the display of the
/// environment, and waits. True for OK, whatever was typed; false for Cancel. Throws
/// std::runtime_error when no dialog can be shown.
bool personGivesPassword();

} // namespace practice
