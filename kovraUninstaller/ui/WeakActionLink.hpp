#pragma once

#include "platform/declarative/PageState.hpp"

#include <functional>
#include <string>

namespace kovra {

/// A quiet underlined text that runs an action, as large as its text; it darkens under the
/// pointer. Made anew for each picture; its title is its identity on the page.
struct WeakActionLink {
    std::string title;
    std::function<void()> action; ///< called on the main thread

    /// `values` tell how far the link is into its hovered look.
    [[nodiscard]] platform::declarative::Element
    body(const platform::declarative::PageValues& values) const;
};

} // namespace kovra
