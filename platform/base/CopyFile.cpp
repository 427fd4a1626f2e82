#include "platform/base/CopyFile.hpp"

#include "platform/base/UniqueFd.hpp"
#include "platform/base/WriteFile.hpp"

#include <array>
#include <fcntl.h>
#include <sys/stat.h>

namespace platform {

namespace {

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

// Opened without blocking: a fifo under the source's name must not hold the program up.
std::error_code copyFile(const std::string& from, const std::string& to) {
    if (!hasNoNul(from) || !hasNoNul(to)) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    constexpr mode_t ownerWritesAllRead = 0644;
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
