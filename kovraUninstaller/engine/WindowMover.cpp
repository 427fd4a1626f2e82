#include "kovraUninstaller/engine/WindowMover.hpp"

#include "platform/services/Queues.hpp"

namespace kovra {

namespace {

// Main thread only.
WindowMover* installed = nullptr;

} // namespace

void WindowMover::install(WindowMover* mover) {
    installed = mover;
}

platform::Task<void> moveWindowAside() {
    co_await platform::resumeOn(platform::mainQueue());
    if (installed != nullptr) {
        co_await installed->makeRoomForSystemDialog();
    }
    co_await platform::resumeOn(platform::utilityQueue());
}

RecenterWindowAtScopeEnd::~RecenterWindowAtScopeEnd() {
    platform::mainQueue().post([] {
        if (installed != nullptr) {
            installed->recenterWindow();
        }
    });
}

} // namespace kovra
