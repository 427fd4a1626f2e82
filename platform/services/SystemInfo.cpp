#include "platform/services/SystemInfo.hpp"

#include "platform/base/Utf8.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace platform {

std::string textUpToNul(std::span<const char> bytes) {
    const auto end = std::ranges::find(bytes, '\0');
    if (end == bytes.end()) {
        std::fputs("kovra Uninstaller: a system-control string has no end.\n", stderr);
        std::abort();
    }
    return repairedUtf8({bytes.begin(), end});
}

} // namespace platform
