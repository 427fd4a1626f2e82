#pragma once

#include "platform/declarative/PageState.hpp"

#include <functional>
#include <string>

namespace kovra {

/// An underlined text with an outward arrow, for leaving the program; its underline darkens under
/// the pointer. Made anew for each picture; its title is its identity on the page.
struct InlineExternalLink {
    std::string title;
    std::function<void()> action; ///< called on the main thread

    /// `values` tell how far the link is into its hovered look.
    [[nodiscard]] platform::declarative::Element
    body(const platform::declarative::PageValues& values) const;
};

} // namespace kovra
