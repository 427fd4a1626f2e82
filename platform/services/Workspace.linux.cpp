#include "platform/services/Workspace.hpp"

#include "platform/base/ChildProcess.hpp"
#include "platform/services/BackgroundQueue.hpp"

#include <array>
#include <system_error>

namespace platform {

namespace {

// The tool may stay for as long as the browser that it starts, so a thread of its own waits for
// it, and reaps it.
void openWithDesktop(std::string what) {
    utilityQueue().post([what = std::move(what)] {
        const std::array<std::string, 1> arguments{what};
        try {
            static_cast<void>(
                spawnAndWait({.executablePath = "/usr/bin/xdg-open", .arguments = arguments}));
        } catch (const std::system_error&) {
            // No desktop: there is nothing that could show it.
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
