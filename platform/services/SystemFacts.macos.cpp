#include "platform/services/SystemFacts.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/FoundationSymbols.hpp"
#include "platform/foundation/NSProcessInfo.hpp"
#include "platform/objc/AutoreleasePool.hpp"

#include <sys/stat.h>
#include <sys/sysctl.h>
#include <vector>

namespace platform {

OperatingSystemVersion operatingSystemVersion() {
    const objc::AutoreleasePool pool;
    const auto version = foundation::NSProcessInfo::processInfo()->operatingSystemVersion();
    return {version.majorVersion, version.minorVersion, version.patchVersion};
}

// The results are not checked: for an unknown name the buffer stays empty, on which textUpToNul
// aborts.
std::string systemControlString(const char* name) {
    std::size_t size = 0;
    ::sysctlbyname(name, nullptr, &size, nullptr, 0);
    std::vector<char> bytes(size);
    ::sysctlbyname(name, bytes.data(), &size, nullptr, 0);
    return textUpToNul(bytes);
}

std::string homeDirectory() {
    const objc::AutoreleasePool pool;
    return foundation::toString(NSHomeDirectory());
}

std::string temporaryDirectory() {
    const objc::AutoreleasePool pool;
    return foundation::toString(NSTemporaryDirectory());
}

std::optional<FileTime> creationDate(const std::string& path) {
    struct stat status{};
    if (::lstat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return FileTime(std::chrono::seconds(status.st_birthtimespec.tv_sec) +
                    std::chrono::nanoseconds(status.st_birthtimespec.tv_nsec));
}

} // namespace platform
