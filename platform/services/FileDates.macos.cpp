#include "platform/services/FileDates.hpp"

#include <sys/stat.h>

namespace platform {

std::optional<FileTime> creationDate(const std::string& path) {
    struct stat status{};
    if (::lstat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return FileTime(std::chrono::seconds(status.st_birthtimespec.tv_sec) +
                    std::chrono::nanoseconds(status.st_birthtimespec.tv_nsec));
}

} // namespace platform
