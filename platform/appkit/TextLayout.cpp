#include "platform/appkit/TextLayout.hpp"

#include "platform/appkit/TextAttributes.hpp"
#include "platform/foundation/Conversions.hpp"

namespace platform::appkit {

namespace {

// As good as endless, and still far from where a number of points loses its fractions.
constexpr double unlimited = 1.0e6;

// A text is drawn in exactly the width that it was measured at; the last bit of a sum must not
// break its line.
constexpr double slack = 0.01;

} // namespace

TextLayout::TextLayout(const declarative::Text& text, std::optional<double> width)
    : container_(objc::adopt(
          NSTextContainer::alloc()->initWithSize({width ? *width + slack : unlimited, unlimited}))),
      manager_(objc::adopt(NSLayoutManager::alloc()->init())),
      storage_(objc::adopt(NSTextStorage::alloc()->initWithString(
          foundation::toNSString(text.string), textAttributes(text)))) {
    container_->setLineFragmentPadding(0);
    manager_->addTextContainer(container_.get());
    storage_->addLayoutManager(manager_.get());
}

declarative::TextMetrics TextLayout::metrics() const {
    const NSRange glyphs = manager_->glyphRangeForTextContainer(container_.get());
    const NSRect used = manager_->usedRectForTextContainer(container_.get());
    if (glyphs.length == 0) {
        return {.size = {0, used.size.height}, .firstBaseline = used.size.height};
    }
    return {.size = {used.size.width, used.size.height},
            .firstBaseline = manager_->locationForGlyphAtIndex(glyphs.location).y};
}

void TextLayout::draw(declarative::Point origin) const {
    manager_->drawGlyphs(manager_->glyphRangeForTextContainer(container_.get()), toNSPoint(origin));
}

} // namespace platform::appkit
