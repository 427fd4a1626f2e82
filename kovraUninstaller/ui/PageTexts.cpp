#include "kovraUninstaller/ui/PageTexts.hpp"

namespace kovra {

std::string title(const Phase& phase) {
    return std::visit(Cases{
                          [](const phase::Scanning&) { return PageTexts::offerTitle; },
                          [](const phase::Ready&) { return PageTexts::offerTitle; },
                          [](const phase::Uninstalling&) { return PageTexts::offerTitle; },
                          [](const phase::NothingFound&) { return PageTexts::nothingFoundTitle; },
                          [](const phase::Done& done) {
                              return done.residues.empty() ? PageTexts::goodbyeTitle
                                                           : PageTexts::residuesTitle;
                          },
                          [](const phase::Failed&) { return PageTexts::failedTitle; },
                      },
                      phase);
}

std::string subtitle(const Phase& phase) {
    return std::visit(
        Cases{
            [](const phase::Scanning&) -> std::string { return PageTexts::offerSubtitle; },
            [](const phase::Ready&) -> std::string { return PageTexts::offerSubtitle; },
            // Shown whether or not administrator rights turn out to be needed.
            [](const phase::Uninstalling&) -> std::string {
                return PageTexts::uninstallingSubtitle;
            },
            [](const phase::NothingFound&) -> std::string {
                return PageTexts::nothingFoundSubtitle;
            },
            [](const phase::Done& done) -> std::string {
                return done.residues.empty() ? PageTexts::goodbyeSubtitle
                                             : PageTexts::residuesSubtitle;
            },
            [](const phase::Failed& failed) { return failed.stepTitle + ": " + failed.message; },
        },
        phase);
}

std::string announcementOf(const Phase& phase) {
    const std::string first = title(phase);
    return first + (first.ends_with('.') ? " " : ". ") + subtitle(phase);
}

} // namespace kovra
