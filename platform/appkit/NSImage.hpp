#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"
#include "platform/appkit/NSImageSymbolConfiguration.hpp"

namespace platform::appkit {

class NSImage : public NSObject {
  public:
    static constexpr UInteger compositeSourceOver = 2;

    // clang-format off
    static NSImage* alloc() { return ClassMethod<"NSImage", "alloc", NSImage*()>::send(); }
    /// Null when the system has no such symbol. GNUstep lacks the method.
    static NSImage* systemSymbol(NSString* name, NSString* description) { return ClassMethod<"NSImage", "imageWithSystemSymbolName:accessibilityDescription:", NSImage*(NSString*, NSString*)>::send(name, description); }

    NSImage* initWithContentsOfFile(NSString* path) { return InstanceMethod<"NSImage", "initWithContentsOfFile:", NSImage*(NSString*)>::send(this, path); }
    [[nodiscard]] NSSize size() const { return InstanceMethod<"NSImage", "size", NSSize()>::send(this); }
    [[nodiscard]] NSImage* withSymbolConfiguration(NSImageSymbolConfiguration* configuration) const { return InstanceMethod<"NSImage", "imageWithSymbolConfiguration:", NSImage*(NSImageSymbolConfiguration*)>::send(this, configuration); }
    void draw(const NSRect& to, const NSRect& from, UInteger operation, CGFloat fraction, bool respectFlipped, NSDictionary* hints) { InstanceMethod<"NSImage", "drawInRect:fromRect:operation:fraction:respectFlipped:hints:", void(NSRect, NSRect, UInteger, CGFloat, Bool, NSDictionary*)>::send(this, to, from, operation, fraction, objc::toBool(respectFlipped), hints); }

    // clang-format on
};

} // namespace platform::appkit
