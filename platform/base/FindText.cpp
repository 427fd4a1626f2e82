#include "platform/base/FindText.hpp"

#include <string.h>

namespace platform {

std::size_t findText(std::string_view text, std::string_view piece, std::size_t from) {
    if (from > text.size()) {
        return std::string_view::npos;
    }
    // Where a view has nothing to show it need not point anywhere, and the search wants two places.
    if (piece.empty()) {
        return from;
    }
    if (text.empty()) {
        return std::string_view::npos;
    }
    const void* found =
        ::memmem(text.data() + from, text.size() - from, piece.data(), piece.size());
    return found == nullptr
               ? std::string_view::npos
               : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

} // namespace platform
