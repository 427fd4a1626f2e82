#include "platform/base/FileSystem.hpp"

#include "platform/base/RemoveTree.hpp"
#include "platform/base/UniqueFd.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace platform {

namespace {

constexpr mode_t ownerWritesAllRead = 0644;

// Removes the temporary file when it cannot be moved into place.
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

std::error_code lastError() {
    return {errno, std::generic_category()};
}

std::error_code copyBytes(int from, int to) {
    constexpr std::size_t chunkSize = 65536;
    std::array<char, chunkSize> chunk{};
    while (true) {
        const ssize_t count =
            retryInterrupted([&] { return ::read(from, chunk.data(), chunk.size()); });
        if (count == 0) {
            return {};
        }
        if (count < 0 || !writeAll(to, {chunk.data(), static_cast<std::size_t>(count)})) {
            return lastError();
        }
    }
}

std::error_code whyNotRegular(int file) {
    struct stat status{};
    if (::fstat(file, &status) != 0) {
        return lastError();
    }
    if (S_ISREG(status.st_mode)) {
        return {};
    }
    return std::make_error_code(S_ISDIR(status.st_mode) ? std::errc::is_a_directory
                                                        : std::errc::invalid_argument);
}

} // namespace

bool fileExists(const std::string& path) {
    struct stat status{};
    return hasNoNul(path) && ::stat(path.c_str(), &status) == 0;
}

std::optional<std::vector<std::string>> namesInFolder(const std::string& folder) {
    constexpr auto closeFolder = [](DIR* stream) { ::closedir(stream); };
    const std::unique_ptr<DIR, decltype(closeFolder)> stream(
        hasNoNul(folder) ? ::opendir(folder.c_str()) : nullptr);
    if (!stream) {
        return std::nullopt;
    }
    std::vector<std::string> names;
    // Only errno distinguishes the end of a folder from a failure.
    errno = 0;
    while (const dirent* entry = ::readdir(stream.get())) {
        const std::string_view name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
        errno = 0;
    }
    return errno == 0 ? std::optional(std::move(names)) : std::nullopt;
}

// O_NONBLOCK: opening a fifo must not block.
std::optional<std::string> readFile(const std::string& path, std::size_t mostBytes) {
    if (!hasNoNul(path)) {
        return std::nullopt;
    }
    const UniqueFd file(
        retryInterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    struct stat status{};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    std::string content;
    std::array<char, 16384> chunk{};
    while (true) {
        const ssize_t count =
            retryInterrupted([&] { return ::read(file.get(), chunk.data(), chunk.size()); });
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            return content;
        }
        content.append(chunk.data(), static_cast<std::size_t>(count));
        if (content.size() > mostBytes) {
            return std::nullopt;
        }
    }
}

bool createFolders(const std::string& path) {
    if (!hasNoNul(path)) {
        return false;
    }
    std::error_code error;
    std::filesystem::create_directories(path, error);
    return std::filesystem::is_directory(path, error);
}

std::string_view lastPathComponent(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

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
    // O_EXCL and O_NOFOLLOW: never writes through a link that somebody put there meanwhile.
    UniqueFd file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                         ownerWritesAllRead));
    return putInPlace(std::move(file), temporary, path, content);
}

// O_NONBLOCK: opening a fifo must not block.
std::error_code copyFile(const std::string& from, const std::string& to) {
    if (!hasNoNul(from) || !hasNoNul(to)) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    const UniqueFd source(
        retryInterrupted([&] { return ::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    if (!source) {
        return lastError();
    }
    if (const std::error_code error = whyNotRegular(source.get())) {
        return error;
    }
    const UniqueFd target(retryInterrupted([&] {
        return ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerWritesAllRead);
    }));
    if (!target) {
        return lastError();
    }
    const std::error_code error = copyBytes(source.get(), target.get());
    if (error) {
        ::unlink(to.c_str());
    }
    return error;
}

} // namespace platform
