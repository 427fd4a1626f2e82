#include "platform/base/WriteFile.hpp"

#include "platform/base/FilePath.hpp"
#include "platform/base/UniqueFd.hpp"

#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>

namespace platform {

bool writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count =
            retryInterrupted([&] { return ::write(descriptor, content.data(), content.size()); });
        if (count < 0) {
            return false;
        }
        content.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool writeFileAtomically(const std::string& path, std::string_view content) {
    if (!isWholePath(path)) {
        return false;
    }
    constexpr mode_t ownerWritesAllRead = 0644;
    std::string temporary = path + ".XXXXXX";
    UniqueFd file(::mkstemp(temporary.data()));
    if (!file) {
        return false;
    }
    const bool written =
        ::fchmod(file.get(), ownerWritesAllRead) == 0 && writeAll(file.get(), content);
    file.reset();
    if (written && ::rename(temporary.c_str(), path.c_str()) == 0) {
        return true;
    }
    ::unlink(temporary.c_str());
    return false;
}

} // namespace platform
