#include "platform/base/FileSystem.hpp"

#include "platform/base/UniqueFd.hpp"

#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <system_error>

namespace platform {

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
    // Only errno tells the end of a folder from a failure on the way.
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

// Opened without blocking: a fifo under a file's name must not hold the program up.
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

} // namespace platform
