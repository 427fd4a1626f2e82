#pragma once

#include "platform/declarative/PageState.hpp"

#include <functional>
#include <string>

namespace kovra {

/// Shared by the primary button, the "Checking…" placeholder and the progress bar, so that nothing
/// moves when one takes the place of another.
struct ActionMetrics {
    ActionMetrics() = delete;

    static constexpr double width = 220; ///< points
    static constexpr double height = 42; ///< points
    static constexpr platform::declarative::Outline outline{.cornerRadius = 12};
    static constexpr platform::declarative::Font font{
        .size = 16, .weight = platform::declarative::FontWeight::regular};
};

/// Shared by the two text links.
struct LinkStyle {
    LinkStyle() = delete;

    static constexpr platform::declarative::Font font{
        .size = 13, .weight = platform::declarative::FontWeight::light};
    static constexpr platform::declarative::EaseInOut hoverFade{.duration = 0.12}; ///< seconds
};

/// The page's one prominent, filled button, 220 × 42 points whatever its title. Built anew for each
/// frame; its title identifies it on the page.
struct PrimaryButton {
    std::string title;
    std::function<void()> action; ///< called on the main thread

    [[nodiscard]] platform::declarative::Element body() const;
};

/// A quiet underlined text that runs an action, as large as its text; it darkens under the
/// pointer. Built anew for each frame; its title identifies it on the page.
struct WeakActionLink {
    std::string title;
    std::function<void()> action; ///< called on the main thread

    /// `values` hold the progress of the hover fade.
    [[nodiscard]] platform::declarative::Element
    body(const platform::declarative::PageValues& values) const;
};

/// An underlined text with an outward arrow, for leaving the program; its underline darkens under
/// the pointer. Built anew for each frame; its title identifies it on the page.
struct InlineExternalLink {
    std::string title;
    std::function<void()> action; ///< called on the main thread

    /// `values` hold the progress of the hover fade.
    [[nodiscard]] platform::declarative::Element
    body(const platform::declarative::PageValues& values) const;
};

/// The progress bar that takes the primary button's place while the steps run: a pale track, a fill
/// that follows `progressFraction` (0 to 1) on a spring without overshoot, and its label.
[[nodiscard]] platform::declarative::Element
progressBar(double progressFraction, const platform::declarative::PageValues& values);

/// The placeholder that is shown during the scan: the primary button's shape with a muted label,
/// not a button.
[[nodiscard]] platform::declarative::Element checkingPlaceholder();

} // namespace kovra
