#include "kovraUninstaller/ui/ProgressBar.hpp"

#include "kovraUninstaller/ui/ActionMetrics.hpp"
#include "kovraUninstaller/ui/UninstallerTheme.hpp"

namespace kovra {

using namespace platform::declarative;

namespace {

constexpr FrameSize barSize{.width = ActionMetrics::width, .height = ActionMetrics::height};

Element barText(const char* string, const Color& color) {
    return text({.string = string,
                 .font = ActionMetrics::font,
                 .color = color,
                 .alignment = HorizontalAlignment::center})
        .frame(barSize);
}

} // namespace

Element progressBar(double progressFraction, const PageValues& values) {
    const char* const label = "Uninstalling…";
    const AnimatedTarget fill{.id = "progressFraction",
                              .target = progressFraction,
                              .curve = Spring{.response = 0.5, .dampingFraction = 1.0}};
    const double filledWidth = ActionMetrics::width * values.animated(fill.id, fill.target);
    return layers({.horizontal = HorizontalAlignment::leading},
                  {rectangle(UninstallerTheme::brandGreen.withOpacity(0.3)).frame(barSize),
                   rectangle(UninstallerTheme::brandGreen)
                       .frame({.width = filledWidth, .height = ActionMetrics::height})
                       .animating(fill),
                   barText(label, UninstallerTheme::textOnBrand)})
        .frame(barSize, {.horizontal = HorizontalAlignment::leading})
        .clipped(ActionMetrics::outline)
        .accessibility({AccessibilityRole::progressIndicator, label, progressFraction});
}

Element checkingPlaceholder() {
    return barText("Checking…", UninstallerTheme::textMuted)
        .background(rectangle(UninstallerTheme::cardFill))
        .clipped(ActionMetrics::outline);
}

} // namespace kovra
