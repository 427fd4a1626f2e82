#include "practice-mac/stand-ins/Files.hpp"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace practice {

namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

std::string readAll(int descriptor) {
    std::string bytes;
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            bytes.append(buffer.data(), static_cast<size_t>(count));
        } else if (count == 0) {
            return bytes;
        } else if (errno != EINTR) {
            fail("read");
        }
    }
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<size_t>(count));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

std::optional<std::string> readFile(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return std::nullopt;
    }
    std::optional<std::string> bytes;
    try {
        bytes = readAll(descriptor);
    } catch (const std::system_error&) {
        bytes = std::nullopt;
    }
    close(descriptor);
    return bytes;
}

void replaceFile(const std::string& path, std::string_view bytes) {
    struct stat status{};
    const mode_t mode = stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0600;
    std::string temporary = path + ".XXXXXX";
    const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0) {
        fail(path);
    }
    const bool written = writeAll(descriptor, bytes) && fchmod(descriptor, mode) == 0;
    close(descriptor);
    if (!written || rename(temporary.c_str(), path.c_str()) != 0) {
        const int error = errno;
        unlink(temporary.c_str());
        errno = error;
        fail(path);
    }
}

bool appendToFile(const std::string& path, std::string_view bytes) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        return false;
    }
    const bool written = writeAll(descriptor, bytes);
    close(descriptor);
    return written;
}

std::string linkTarget(const std::string& path) {
    std::array<char, PATH_MAX> buffer;
    const ssize_t count = readlink(path.c_str(), buffer.data(), buffer.size());
    if (count < 0) {
        fail(path);
    }
    return {buffer.data(), static_cast<size_t>(count)};
}

std::string homeFolder() {
    if (const char* home = std::getenv("HOME")) {
        return home;
    }
    const passwd* account = getpwuid(getuid());
    if (account == nullptr) {
        throw std::runtime_error("nobody's home");
    }
    return account->pw_dir;
}

std::optional<std::string> workingFolder() {
    std::array<char, PATH_MAX> buffer;
    const char* path = getcwd(buffer.data(), buffer.size());
    return path == nullptr ? std::nullopt : std::optional<std::string>(path);
}

int opened(int descriptor, const char* what) {
    if (descriptor < 0) {
        fail(what);
    }
    return descriptor;
}

bool exists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

} // namespace practice
