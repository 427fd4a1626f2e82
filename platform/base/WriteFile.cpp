#include "platform/base/WriteFile.hpp"

#include "platform/base/RemoveTree.hpp"
#include "platform/base/UniqueFd.hpp"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace platform {

namespace {

constexpr mode_t ownerWritesAllRead = 0644;

// Takes the temporary file away again when it cannot be put in place.
bool putInPlace(UniqueFd file, const std::string& temporary, const std::string& path,
                std::string_view content) {
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

} // namespace

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
    if (!hasNoNul(path)) {
        return false;
    }
    std::string temporary = path + ".XXXXXX";
    UniqueFd file(::mkstemp(temporary.data()));
    return putInPlace(std::move(file), temporary, path, content);
}

bool writeFileAtomically(const std::string& path, std::string_view content,
                         const std::string& temporary) {
    if (!hasNoNul(path) || !hasNoNul(temporary)) {
        return false;
    }
    static_cast<void>(removeTree(temporary));
    // Only a file made here is written, never one that a link put in its place leads to.
    UniqueFd file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                         ownerWritesAllRead));
    return putInPlace(std::move(file), temporary, path, content);
}

} // namespace platform
