#pragma once

#include "platform/declarative/PageLayout.hpp"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace platform::declarative::testing {

/// The commands of one type, in order.
template <typename Command>
std::vector<Command> commandsOf(const PaintList& list) {
    std::vector<Command> found;
    for (const PaintCommand& command : list.commands) {
        if (const auto* match = std::get_if<Command>(&command)) {
            found.push_back(*match);
        }
    }
    return found;
}

/// The command that draws that text; throws when there is none.
inline paint::DrawText drawingOf(const PaintList& list, std::string_view string) {
    for (const paint::DrawText& drawn : commandsOf<paint::DrawText>(list)) {
        if (drawn.text.string == string) {
            return drawn;
        }
    }
    throw std::runtime_error("not drawn: " + std::string(string));
}

/// The index of that command; the size of the list when there is none.
template <typename Command>
std::size_t indexOf(const PaintList& list, const Command& wanted) {
    std::size_t index = 0;
    while (index < list.commands.size() && list.commands[index] != PaintCommand{wanted}) {
        ++index;
    }
    return index;
}

} // namespace platform::declarative::testing
