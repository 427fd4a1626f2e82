#include "kovraUninstaller/ui/Controls.hpp"

#include "kovraUninstaller/ui/PageTexts.hpp"
#include "kovraUninstaller/ui/UninstallerTheme.hpp"

namespace kovra {

using namespace platform::declarative;

namespace {

constexpr FrameSize actionSize{.width = ActionMetrics::width, .height = ActionMetrics::height};

Element actionLabel(const std::string& string, const Color& color) {
    return text({.string = string,
                 .font = ActionMetrics::font,
                 .color = color,
                 .alignment = HorizontalAlignment::center})
        .frame(actionSize);
}

} // namespace

Element PrimaryButton::body() const {
    const Element label = actionLabel(title, UninstallerTheme::textOnBrand)
                              .background(rectangle(UninstallerTheme::brandGreen))
                              .clipped(ActionMetrics::outline);
    return button({.id = title,
                   .action = action,
                   .accessibilityTitle = title,
                   .focusRing = ActionMetrics::outline},
                  label);
}

Element WeakActionLink::body(const PageValues& values) const {
    const double hovering = values.hover(title);
    const Element label =
        text({.string = title,
              .font = LinkStyle::font,
              .color = mixed(UninstallerTheme::textMuted, UninstallerTheme::textPrimary, hovering),
              .underline =
                  mixed(UninstallerTheme::weakUnderlineResting, UninstallerTheme::ink, hovering)});
    return button({.id = title,
                   .action = action,
                   .accessibilityTitle = title,
                   .hoverFade = LinkStyle::hoverFade},
                  label);
}

Element InlineExternalLink::body(const PageValues& values) const {
    const double hovering = values.hover(title);
    const Element name = text({.string = title,
                               .font = LinkStyle::font,
                               .color = UninstallerTheme::textPrimary,
                               .underline = mixed(UninstallerTheme::linkUnderlineResting,
                                                  UninstallerTheme::ink, hovering)});
    const Element arrow = symbol({.name = "arrow.up.right",
                                  .font = {.size = 11, .weight = FontWeight::regular},
                                  .color = UninstallerTheme::textPrimary,
                                  .accessibilityLabel = {}});
    return button({.id = title,
                   .action = action,
                   .accessibilityTitle = title,
                   .hoverFade = LinkStyle::hoverFade},
                  horizontalStack({.alignment = VerticalAlignment::firstTextBaseline, .spacing = 3},
                                  {name, arrow}));
}

Element progressBar(double progressFraction, const PageValues& values) {
    const AnimatedTarget fill{
        .id = "progressFraction", .target = progressFraction, .curve = Spring{.response = 0.5}};
    const double filledWidth = ActionMetrics::width * values.animated(fill.id, fill.target);
    return layers({.horizontal = HorizontalAlignment::leading},
                  {rectangle(UninstallerTheme::brandGreen.withOpacity(0.3)).frame(actionSize),
                   rectangle(UninstallerTheme::brandGreen)
                       .frame({.width = filledWidth, .height = ActionMetrics::height})
                       .animating(fill),
                   actionLabel(PageTexts::uninstalling, UninstallerTheme::textOnBrand)})
        .frame(actionSize, {.horizontal = HorizontalAlignment::leading})
        .clipped(ActionMetrics::outline)
        .accessibility(
            {AccessibilityRole::progressIndicator, PageTexts::uninstalling, progressFraction});
}

Element checkingPlaceholder() {
    return actionLabel(PageTexts::checking, UninstallerTheme::textMuted)
        .background(rectangle(UninstallerTheme::cardFill))
        .clipped(ActionMetrics::outline);
}

} // namespace kovra
