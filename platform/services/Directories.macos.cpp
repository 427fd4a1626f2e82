#include "platform/services/Directories.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/FoundationSymbols.hpp"
#include "platform/objc/AutoreleasePool.hpp"

namespace platform {

std::string homeDirectory() {
    const objc::AutoreleasePool pool;
    return foundation::toString(NSHomeDirectory());
}

std::string temporaryDirectory() {
    const objc::AutoreleasePool pool;
    return foundation::toString(NSTemporaryDirectory());
}

} // namespace platform
