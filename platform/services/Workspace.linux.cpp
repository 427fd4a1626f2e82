#include "platform/services/Workspace.hpp"

#include "platform/base/ChildProcess.hpp"
#include "platform/services/Queues.hpp"

#include <array>
#include <system_error>

namespace platform {

namespace {

// xdg-open may run for as long as the browser that it starts, so a background thread waits for it
// and reaps it.
void openWithDesktop(std::string target) {
    utilityQueue().post([target = std::move(target)] {
        const std::array<std::string, 1> arguments{target};
        try {
            static_cast<void>(
                spawnAndWait({.executablePath = "/usr/bin/xdg-open", .arguments = arguments}));
        } catch (const std::system_error&) {
            // xdg-open is missing: there is no desktop.
        }
    });
}

} // namespace

void openAddress(const std::string& address) {
    openWithDesktop(address);
}

void revealFile(const std::string& path) {
    openWithDesktop(path.substr(0, path.rfind('/')));
}

} // namespace platform
