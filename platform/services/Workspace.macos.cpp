#include "platform/services/Workspace.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSArray.hpp"
#include "platform/foundation/NSURL.hpp"
#include "platform/foundation/NSWorkspace.hpp"
#include "platform/objc/AutoreleasePool.hpp"

namespace platform {

using namespace foundation;

void openAddress(const std::string& address) {
    const objc::AutoreleasePool pool;
    NSString* text = toNSString(address);
    NSURL* url = text == nullptr ? nullptr : NSURL::URLWithString(text);
    if (url != nullptr) {
        NSWorkspace::sharedWorkspace()->openURL(url);
    }
}

void revealFile(const std::string& path) {
    const objc::AutoreleasePool pool;
    NSString* text = toNSString(path);
    if (text != nullptr) {
        NSURL* url = NSURL::fileURLWithPath(text);
        NSWorkspace::sharedWorkspace()->activateFileViewerSelectingURLs(
            NSArray::arrayWithObject(url));
    }
}

} // namespace platform
