#pragma once

#include "platform/appkit/NSTextContainer.hpp"

namespace platform::appkit {

class NSLayoutManager : public NSObject {
  public:
    // clang-format off
    static NSLayoutManager* alloc() { return ClassMethod<"NSLayoutManager", "alloc", NSLayoutManager*()>::send(); }

    NSLayoutManager* init() { return InstanceMethod<"NSLayoutManager", "init", NSLayoutManager*()>::send(this); }
    void addTextContainer(NSTextContainer* container) { InstanceMethod<"NSLayoutManager", "addTextContainer:", void(NSTextContainer*)>::send(this, container); }
    [[nodiscard]] NSRange glyphRangeForTextContainer(NSTextContainer* container) const { return InstanceMethod<"NSLayoutManager", "glyphRangeForTextContainer:", NSRange(NSTextContainer*)>::send(this, container); }
    [[nodiscard]] NSRect usedRectForTextContainer(NSTextContainer* container) const { return InstanceMethod<"NSLayoutManager", "usedRectForTextContainer:", NSRect(NSTextContainer*)>::send(this, container); }
    [[nodiscard]] NSPoint locationForGlyphAtIndex(UInteger index) const { return InstanceMethod<"NSLayoutManager", "locationForGlyphAtIndex:", NSPoint(UInteger)>::send(this, index); }
    void drawGlyphs(NSRange range, NSPoint origin) { InstanceMethod<"NSLayoutManager", "drawGlyphsForGlyphRange:atPoint:", void(NSRange, NSPoint)>::send(this, range, origin); }

    // clang-format on
};

} // namespace platform::appkit
