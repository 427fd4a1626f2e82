#include "platform/services/Directories.hpp"

#include <array>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace platform {

namespace {

// Empty when the variable is missing.
std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string homeOfAccount() {
    passwd account{};
    passwd* found = nullptr;
    std::array<char, 16384> strings{};
    ::getpwuid_r(::getuid(), &account, strings.data(), strings.size(), &found);
    return found == nullptr ? "/" : found->pw_dir;
}

} // namespace

std::string homeDirectory() {
    std::string home = environment("HOME");
    if (home.empty()) {
        home = homeOfAccount();
    }
    while (home.size() > 1 && home.ends_with('/')) {
        home.pop_back();
    }
    return home;
}

std::string temporaryDirectory() {
    std::string folder = environment("TMPDIR");
    if (folder.empty()) {
        folder = "/tmp";
    }
    if (folder.back() != '/') {
        folder += '/';
    }
    return folder;
}

} // namespace platform
