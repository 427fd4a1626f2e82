#pragma once

#include "platform/foundation/NSArray.hpp"
#include "platform/foundation/NSURL.hpp"

namespace platform::foundation {

/// A class of AppKit, but one that needs no window.
class NSWorkspace : public NSObject {
  public:
    // clang-format off
    static NSWorkspace* sharedWorkspace() { return ClassMethod<"NSWorkspace", "sharedWorkspace", NSWorkspace*()>::send(); }

    bool openURL(NSURL* url) { return InstanceMethod<"NSWorkspace", "openURL:", Bool(NSURL*)>::send(this, url) != NO; }
    void activateFileViewerSelectingURLs(NSArray* urls) { InstanceMethod<"NSWorkspace", "activateFileViewerSelectingURLs:", void(NSArray*)>::send(this, urls); }

    // clang-format on
};

} // namespace platform::foundation
