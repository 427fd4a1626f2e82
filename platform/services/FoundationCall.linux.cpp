#include "platform/services/FoundationCall.hpp"

#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/MainQueue.hpp"

#include <future>

namespace platform {

// The background stays out of Objective-C; see the queues of the background.
void callFoundation(const std::function<void()>& call) {
    if (isMainThread()) {
        const objc::AutoreleasePool pool;
        call();
        return;
    }
    std::packaged_task<void()> onMain(call);
    mainQueue().post([&onMain] { onMain(); });
    onMain.get_future().get();
}

} // namespace platform
