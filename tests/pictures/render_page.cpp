#include "kovraUninstaller/ui/UninstallerView.hpp"
#include "platform/appkit/ApplicationStart.hpp"
#include "platform/appkit/Picture.hpp"
#include "platform/appkit/TextLayout.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/ProcessStart.hpp"
#include "tests/pictures/PageStates.hpp"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

// render-page FOLDER ICON [NAME...]: writes NAME.png and NAME@2x.png of each named state of the
// page, or of all of them, into the folder; for NAME=MESSAGE, of the failure with that message.

namespace {

using namespace platform;
using namespace kovra;

declarative::PaintList paintListOf(const PicturedState& state) {
    declarative::PageValues::Map hovers;
    if (!state.hoveredButton.empty()) {
        hovers.emplace(state.hoveredButton, 1.0);
    }
    declarative::Interaction interaction;
    if (!state.focusedButton.empty()) {
        interaction.focused = std::string(state.focusedButton);
    }
    const UninstallerView view({});
    return layOut(view.body(state.phase, state.progressFraction, {hovers, {}}),
                  UninstallerView::size, appkit::SystemMeasurer(), interaction)
        .paint;
}

bool write(const std::string& path, const foundation::NSData* data) {
    std::ofstream file(path, std::ios::binary);
    file.write(static_cast<const char*>(data->bytes()),
               static_cast<std::streamsize>(data->length()));
    return file.good();
}

std::vector<PicturedState> wantedStates(std::span<char*> arguments) {
    std::vector<PicturedState> states;
    for (const PicturedState& state : pageStates()) {
        if (arguments.empty() || std::ranges::find(arguments, state.name) != arguments.end()) {
            states.push_back(state);
        }
    }
    for (const std::string_view argument : arguments) {
        const std::size_t end = argument.find('=');
        if (end != std::string_view::npos) {
            states.push_back(
                {argument.substr(0, end),
                 phase::Failed{"Remove kovra apps", std::string(argument.substr(end + 1))}});
        }
    }
    return states;
}

} // namespace

int main(int argc, char** argv) {
    initializeProcess(argv, environ);
    const objc::AutoreleasePool pool;
    const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() < 3) {
        std::fputs("usage: render-page FOLDER ICON [NAME...]\n", stderr);
        return 2;
    }
    if (appkit::startApplication() == nullptr) {
        std::fputs("render-page: there is no display.\n", stderr);
        return 1;
    }
    const std::string folder = arguments[1];
    const std::string icon = arguments[2];
    appkit::NamedImages images([&icon](const std::string&) { return std::optional(icon); });
    for (const PicturedState& state : wantedStates(arguments.subspan(3))) {
        const auto list = paintListOf(state);
        const std::string path = folder + "/" + std::string(state.name);
        if (!write(path + ".png", appkit::pngOf(list, 1, images)) ||
            !write(path + "@2x.png", appkit::pngOf(list, 2, images))) {
            std::fprintf(stderr, "render-page: %s could not be written.\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
