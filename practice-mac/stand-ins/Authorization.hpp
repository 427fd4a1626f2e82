#pragma once

#include <optional>
#include <string>

namespace practice {

/// What becomes of a request for an administrator's rights: nothing stands in the way, or an error
/// as AppleScript reports it.
struct Refusal {
    std::string message;
    int number;
};

/// Asks for an administrator's password and waits for the answer. The scenario answers: its
/// answers are used one after the other, and the last one for good. With the answer "person" a
/// dialog comes up on the display, and whoever sits there answers it.
std::optional<Refusal> askForPassword();

} // namespace practice
