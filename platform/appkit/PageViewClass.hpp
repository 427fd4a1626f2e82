#pragma once

#include "platform/appkit/NSView.hpp"

namespace platform::appkit {

class PageView;

/// A view that hands on to `page` whatever happens to it.
[[nodiscard]] objc::Retained<NSView> makePageNSView(PageView* page, declarative::Size size);

/// From now on nothing is handed on.
void forgetPage(NSView* view);

} // namespace platform::appkit
