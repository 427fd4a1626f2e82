#include "kovraUninstaller/ui/InlineExternalLink.hpp"

#include "kovraUninstaller/ui/LinkStyle.hpp"
#include "kovraUninstaller/ui/UninstallerTheme.hpp"

namespace kovra {

using namespace platform::declarative;

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

} // namespace kovra
