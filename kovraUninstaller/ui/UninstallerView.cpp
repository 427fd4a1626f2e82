#include "kovraUninstaller/ui/UninstallerView.hpp"

#include "kovraUninstaller/ui/Controls.hpp"
#include "kovraUninstaller/ui/PageTexts.hpp"
#include "kovraUninstaller/ui/UninstallerTheme.hpp"

#include <utility>

namespace kovra {

using namespace platform::declarative;

namespace {

constexpr double iconSide = 112;

Element applicationIcon() {
    return image("AppIcon").frame({iconSide, iconSide}).clipped({.cornerRadius = 24});
}

Element resultSymbol(const char* name, const Color& color, const char* spoken) {
    return symbol(
        {.name = name, .font = {.size = 48}, .color = color, .accessibilityLabel = spoken});
}

Element checkMark() {
    return resultSymbol("checkmark.circle.fill", UninstallerTheme::brandGreen,
                        PageTexts::checkMark);
}

Element iconSlot(const Phase& phase) {
    return std::visit(Cases{
                          [](const phase::Scanning&) { return applicationIcon(); },
                          [](const phase::Ready&) { return applicationIcon(); },
                          [](const phase::Uninstalling&) { return applicationIcon(); },
                          [](const phase::NothingFound&) { return checkMark(); },
                          [](const phase::Done&) { return checkMark(); },
                          [](const phase::Failed&) {
                              return resultSymbol("exclamationmark.triangle.fill",
                                                  UninstallerTheme::danger, PageTexts::warningSign);
                          },
                      },
                      phase);
}

Element textBlock(const Phase& phase) {
    return verticalStack({.spacing = 6},
                         {text({.string = title(phase),
                                .font = {.size = 25, .weight = FontWeight::semibold},
                                .color = UninstallerTheme::textPrimary,
                                .alignment = HorizontalAlignment::center}),
                          text({.string = subtitle(phase),
                                .font = {.size = 13, .weight = FontWeight::light},
                                .color = UninstallerTheme::textSecondary,
                                .alignment = HorizontalAlignment::center})
                              .padding({.left = 20, .right = 20})});
}

} // namespace

UninstallerView::UninstallerView(Actions actions) : actions_(std::move(actions)) {}

Element UninstallerView::body(const Phase& phase, double progressFraction,
                              const PageValues& values) const {
    // The text block's height is fixed, so that the button does not move with the subtitle's
    // length.
    const Element column = verticalStack(
        {},
        {iconSlot(phase).frame({iconSide, iconSide}), Element{}.frame({.height = 16}),
         textBlock(phase).frame({400, 130}, {.vertical = VerticalAlignment::top}),
         actionButton(phase, progressFraction, values),
         layers({}, {belowButtonLink(phase, values)}).frame({.height = 30}).padding({.top = 12}),
         spacer()});
    return layers({}, {rectangle(UninstallerTheme::background),
                       column.padding({.top = 44, .left = 40, .right = 40})})
        .frame({size.width, size.height});
}

Element UninstallerView::actionButton(const Phase& phase, double progressFraction,
                                      const PageValues& values) const {
    const auto quit = [this] { return PrimaryButton{PageTexts::quit, actions_.quit}.body(); };
    return std::visit(
        Cases{
            [&](const phase::Ready&) {
                return PrimaryButton{PageTexts::uninstall, actions_.startUninstall}.body();
            },
            [&](const phase::Scanning&) { return checkingPlaceholder(); },
            [&](const phase::Uninstalling&) { return progressBar(progressFraction, values); },
            [&](const phase::NothingFound&) { return quit(); },
            [&](const phase::Done&) { return quit(); },
            [&](const phase::Failed&) {
                return PrimaryButton{PageTexts::retry, actions_.startUninstall}.body();
            },
        },
        phase);
}

Element UninstallerView::belowButtonLink(const Phase& phase, const PageValues& values) const {
    const auto showLog = [&] {
        return WeakActionLink{PageTexts::showLog, actions_.showLogInFinder}.body(values);
    };
    return std::visit(
        Cases{
            [](const phase::Ready&) { return Element{}; },
            [](const phase::Scanning&) { return Element{}; },
            [](const phase::Uninstalling&) { return Element{}; },
            [&](const phase::NothingFound&) {
                return WeakActionLink{PageTexts::cleanUpAnyway, actions_.startUninstall}.body(
                    values);
            },
            [&](const phase::Failed&) { return showLog(); },
            [&](const phase::Done& done) {
                return done.residues.empty()
                           ? InlineExternalLink{PageTexts::downloadAgain, actions_.openDownloadPage}
                                 .body(values)
                           : showLog();
            },
        },
        phase);
}

} // namespace kovra
