#include "platform/services/SystemFacts.hpp"

#include "platform/base/FileSystem.hpp"
#include "platform/services/PropertyListSerialization.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr const char* practiceMacSystem = "/var/db/practice-mac/system.plist";

// A value of the practice Mac's description of itself; empty where there is none.
std::string practiceMacString(std::string_view key) {
    const auto content = readFile(practiceMacSystem);
    const auto list = content ? parsePropertyList(*content) : std::nullopt;
    const auto* values = list ? list->as<PropertyListValue::Dictionary>() : nullptr;
    const auto found =
        values != nullptr ? values->find(key) : PropertyListValue::Dictionary::const_iterator();
    if (values == nullptr || found == values->end()) {
        return {};
    }
    const auto* text = found->second.as<std::string>();
    return text != nullptr ? *text : std::string();
}

utsname linuxItself() {
    utsname names{};
    ::uname(&names);
    return names;
}

// Empty when the variable is not set.
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

OperatingSystemVersion operatingSystemVersion() {
    std::string text = practiceMacString("ProductVersion");
    if (text.empty()) {
        text = static_cast<const char*>(linuxItself().release);
    }
    OperatingSystemVersion version;
    std::sscanf(text.c_str(), "%ld.%ld.%ld", &version.major, &version.minor, &version.patch);
    return version;
}

std::string systemControlString(const char* name) {
    std::string text = practiceMacString(name);
    if (text.empty()) {
        const utsname names = linuxItself();
        text = std::string_view(name) == "hw.model" ? static_cast<const char*>(names.machine)
                                                    : static_cast<const char*>(names.release);
    }
    return textUpToNul({text.c_str(), text.size() + 1});
}

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
