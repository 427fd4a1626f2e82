#include "kovraUninstaller/ui/PrimaryButton.hpp"

#include "kovraUninstaller/ui/ActionMetrics.hpp"
#include "kovraUninstaller/ui/UninstallerTheme.hpp"

namespace kovra {

using namespace platform::declarative;

Element PrimaryButton::body() const {
    const Element label = text({.string = title,
                                .font = ActionMetrics::font,
                                .color = UninstallerTheme::textOnBrand,
                                .alignment = HorizontalAlignment::center})
                              .frame({ActionMetrics::width, ActionMetrics::height})
                              .background(rectangle(UninstallerTheme::brandGreen))
                              .clipped(ActionMetrics::outline);
    return button({.id = title,
                   .action = action,
                   .accessibilityTitle = title,
                   .focusRing = ActionMetrics::outline},
                  label);
}

} // namespace kovra
