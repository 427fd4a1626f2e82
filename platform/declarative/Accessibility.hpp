#pragma once

#include <optional>
#include <string>

namespace platform::declarative {

enum class AccessibilityRole { staticText, button, image, progressIndicator };

/// How something is told to people who do not see it.
struct AccessibilityDescription {
    AccessibilityRole role;
    std::string label;
    std::optional<double> value = std::nullopt; ///< from 0 to 1, of a progress indicator

    friend bool operator==(const AccessibilityDescription&,
                           const AccessibilityDescription&) = default;
};

} // namespace platform::declarative
