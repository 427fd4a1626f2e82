#include "kovraUninstaller/ui/WeakActionLink.hpp"

#include "kovraUninstaller/ui/LinkStyle.hpp"
#include "kovraUninstaller/ui/UninstallerTheme.hpp"

namespace kovra {

using namespace platform::declarative;

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

} // namespace kovra
