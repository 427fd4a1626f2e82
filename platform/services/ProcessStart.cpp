#include "platform/services/ProcessStart.hpp"

#include "platform/services/MainBundle.hpp"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <memory>
#include <set>
#include <string>
#include <unistd.h>

// POSIX leaves the declaration to the program, and Linux makes one of its own.
extern "C" char** environ; // NOLINT(readability-redundant-declaration)

namespace platform {

namespace {

// The user, his folders and language, and what macOS tells an application about its session.
constexpr std::array<std::string_view, 15> keptNames{"HOME",
                                                     "USER",
                                                     "LOGNAME",
                                                     "SHELL",
                                                     "TMPDIR",
                                                     "LANG",
                                                     "TZ",
                                                     "__CF_USER_TEXT_ENCODING",
                                                     "__CFBundleIdentifier",
                                                     "LaunchInstanceID",
                                                     "SECURITYSESSIONID",
                                                     "XPC_SERVICE_NAME",
                                                     "XPC_FLAGS",
                                                     "COMMAND_MODE",
                                                     "MallocNanoZone"};

char path[] = "PATH=/usr/bin:/bin:/usr/sbin:/sbin";

bool isLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

// The names under which a shell exports functions have other characters.
bool isPlainName(std::string_view name) {
    return std::ranges::all_of(name, [](char c) { return isLetterOrDigit(c) || c == '_'; });
}

bool isKeptName(std::string_view name) {
    return isPlainName(name) && (std::ranges::find(keptNames, name) != keptNames.end() ||
                                 name.starts_with("LC_") || isKeptOnThisSystem(name));
}

bool isControlCharacter(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

// Whether ".." is one of the names in a path.
bool leadsUpwards(std::string_view path) {
    return ("/" + std::string(path) + "/").find("/../") != std::string::npos;
}

// A name that is looked up in the system's own folders, and no path to another file: from the
// locale's file root's shell learns which characters separate the words of its script.
bool isNameOfLocaleOrZone(std::string_view value) {
    constexpr std::string_view punctuation = "._-+@/,";
    return !value.starts_with('/') && !leadsUpwards(value) &&
           std::ranges::all_of(value, [=](char c) {
               return isLetterOrDigit(c) || punctuation.find(c) != std::string_view::npos;
           });
}

bool isHarmless(std::string_view name, std::string_view value) {
    const bool isLocaleOrZone = name == "LANG" || name == "TZ" || name.starts_with("LC_");
    return !value.starts_with("()") && std::ranges::none_of(value, isControlCharacter) &&
           (!isLocaleOrZone || isNameOfLocaleOrZone(value));
}

} // namespace

void reduceEnvironment() {
    char** const before = environ;
    std::size_t count = 0;
    while (before != nullptr && before[count] != nullptr) {
        ++count;
    }
    // Room for PATH and the null pointer at the end.
    auto reduced = std::make_unique<char*[]>(count + 2);
    std::size_t size = 0;
    reduced[size++] = path;
    std::set<std::string_view> seen;
    for (std::size_t index = 0; index < count; ++index) {
        const std::string_view entry = before[index];
        const std::size_t equals = entry.find('=');
        const std::string_view name = entry.substr(0, equals);
        if (equals != std::string_view::npos && isKeptName(name) && seen.insert(name).second &&
            isHarmless(name, entry.substr(equals + 1))) {
            reduced[size++] = before[index];
        }
    }
    // Never freed: getenv returns pointers into it.
    environ = reduced.release();
}

// open() returns the lowest free descriptor.
void openMissingStandardStreams() {
    int descriptor = ::open("/dev/null", O_RDWR);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO) {
        descriptor = ::open("/dev/null", O_RDWR);
    }
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

void beginProgram(char** argv) {
    reduceEnvironment();
    openMissingStandardStreams();
    initializeProcess(argv, environ);
    // The system derives the bundle's path from the program's, which may be relative to the current
    // folder, and caches it.
    static_cast<void>(mainBundlePath());
    // Does not fail: everybody may enter the root folder.
    [[maybe_unused]] const int status = ::chdir("/");
}

} // namespace platform
