#include "kovraUninstaller/engine/DialogRoom.hpp"

#include "platform/services/Queues.hpp"

namespace kovra {

namespace {

// Main thread only.
DialogRoom* registered = nullptr;

} // namespace

void DialogRoom::use(DialogRoom* room) {
    registered = room;
}

platform::Task<void> DialogRoom::make() {
    co_await platform::resumeOn(platform::mainQueue());
    if (registered != nullptr) {
        co_await registered->makeRoomForSystemDialog();
    }
    co_await platform::resumeOn(platform::utilityQueue());
}

DialogRoom::GivenBack::~GivenBack() {
    platform::mainQueue().post([] {
        if (registered != nullptr) {
            registered->recenterWindow();
        }
    });
}

} // namespace kovra
