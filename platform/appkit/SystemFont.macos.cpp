#include "platform/appkit/SystemFont.hpp"

#include "platform/appkit/SystemFontWeight.macos.hpp"

namespace platform::appkit {

NSFont* systemFont(const declarative::Font& font) {
    return NSFont::systemFontOfSize(font.size, systemFontWeight(font.weight));
}

} // namespace platform::appkit
