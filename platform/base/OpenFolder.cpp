#include "platform/base/OpenFolder.hpp"

#include "platform/base/UniqueFd.hpp"

#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>

namespace platform {

namespace {

OpenFolder::Kind kindOf(int at, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_DIR ? OpenFolder::Kind::folder : OpenFolder::Kind::other;
    }
    struct stat status{};
    const bool isFolder =
        ::fstatat(at, static_cast<const char*>(entry.d_name), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISDIR(status.st_mode);
    return isFolder ? OpenFolder::Kind::folder : OpenFolder::Kind::other;
}

} // namespace

OpenFolder::OpenFolder(int at, const char* name) {
    UniqueFd opened(retryInterrupted([&] {
        return ::openat(at, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    }));
    if (opened) {
        stream_.reset(::fdopendir(opened.get()));
    }
    if (stream_) {
        static_cast<void>(opened.release());
    }
}

OpenFolder::Listing OpenFolder::entries() {
    Listing found;
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(stream_.get());
        if (entry == nullptr) {
            found.error = errno;
            return found;
        }
        const std::string_view name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..") {
            found.entries.push_back({std::string(name), kindOf(descriptor(), *entry)});
        }
    }
}

} // namespace platform
