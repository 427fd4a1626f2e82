#include "platform/services/SystemInfo.hpp"

#include "platform/foundation/NSProcessInfo.hpp"
#include "platform/objc/AutoreleasePool.hpp"

#include <sys/sysctl.h>
#include <vector>

namespace platform {

OperatingSystemVersion operatingSystemVersion() {
    const objc::AutoreleasePool pool;
    const auto version = foundation::NSProcessInfo::processInfo()->operatingSystemVersion();
    return {version.majorVersion, version.minorVersion, version.patchVersion};
}

// Neither call's result is looked at: a name that the system does not know leaves an empty
// buffer, and the missing NUL tells.
std::string systemControlString(const char* name) {
    std::size_t size = 0;
    ::sysctlbyname(name, nullptr, &size, nullptr, 0);
    std::vector<char> bytes(size);
    ::sysctlbyname(name, bytes.data(), &size, nullptr, 0);
    return textUpToNul(bytes);
}

} // namespace platform
