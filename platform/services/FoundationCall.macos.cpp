#include "platform/services/FoundationCall.hpp"

#include "platform/objc/AutoreleasePool.hpp"

namespace platform {

void callFoundation(const std::function<void()>& call) {
    const objc::AutoreleasePool pool;
    call();
}

} // namespace platform
