#include "platform/services/FileDates.hpp"

#include <fcntl.h>
#include <sys/stat.h>

namespace platform {

std::optional<FileTime> creationDate(const std::string& path) {
    struct statx status{};
    if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BTIME, &status) != 0 ||
        (status.stx_mask & STATX_BTIME) == 0) {
        return std::nullopt;
    }
    return FileTime(std::chrono::seconds(status.stx_btime.tv_sec) +
                    std::chrono::nanoseconds(status.stx_btime.tv_nsec));
}

} // namespace platform
