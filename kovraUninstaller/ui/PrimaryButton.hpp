#pragma once

#include "platform/declarative/Element.hpp"

#include <functional>
#include <string>

namespace kovra {

/// The page's one prominent, filled button, 220 × 42 points whatever its title. Made anew for each
/// picture; its title is its identity on the page.
struct PrimaryButton {
    std::string title;
    std::function<void()> action; ///< called on the main thread

    [[nodiscard]] platform::declarative::Element body() const;
};

} // namespace kovra
