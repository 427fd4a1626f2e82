// Starts a Mac program in the emulator: start-mac-program PROGRAM NAME ARGUMENTS... The paths of
// its parts are in a file beside this one, of the same name with ".conf" appended, in lines
// NAME=VALUE:
//
//   emulator=PATH   qemu-aarch64
//   runtime=PATH    mac-runtime
//   DISPLAY=…       any other name: a variable for the toolkit
//
// The program gets this process's environment, entry for entry. It is passed apart from the
// toolkit's (loader/Environment.hpp), so that neither affects the other.

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

extern "C" char** environ;

namespace {

struct Settings {
    std::string emulator;
    std::string runtime;
    std::vector<std::string> variables;
};

std::string ownPath() {
    char path[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", &path[0], sizeof path);
    return length < 0 ? "" : std::string(&path[0], static_cast<std::size_t>(length));
}

Settings readSettings(const std::string& path) {
    Settings settings;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("emulator=")) {
            settings.emulator = line.substr(line.find('=') + 1);
        } else if (line.starts_with("runtime=")) {
            settings.runtime = line.substr(line.find('=') + 1);
        } else {
            settings.variables.push_back(line);
        }
    }
    return settings;
}

// The toolkit uses the account, language and time zone of the program's environment.
bool isForToolkit(const std::string& entry) {
    for (const char* name : {"HOME=", "USER=", "LOGNAME=", "LANG=", "LC_ALL=", "TZ="}) {
        if (entry.starts_with(name)) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> environmentOf(const Settings& settings, const std::string& starter) {
    std::vector<std::string> entries = settings.variables;
    std::size_t count = 0;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (isForToolkit(*entry)) {
            entries.emplace_back(*entry);
        }
        entries.push_back("MAC_RUNTIME_ENTRY_" + std::to_string(count++) + '=' + *entry);
    }
    entries.push_back("MAC_RUNTIME_ENTRIES=" + std::to_string(count));
    entries.push_back("MAC_RUNTIME_STARTER=" + starter);
    return entries;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

int main(int argc, char** argv) {
    constexpr int cannotStart = 126;
    if (argc < 3) {
        std::fprintf(stderr, "usage: start-mac-program PROGRAM NAME ARGUMENTS...\n");
        return cannotStart;
    }
    const std::string starter = ownPath();
    const Settings settings = readSettings(starter + ".conf");
    // The name is the emulator's own argv[0], which ps shows. The main thread's stack is as large
    // as a Mac's. The C library's character sets are those of the fetched packages; a toolkit may
    // look for them before the runtime's main. Debian 13's would ask a shell for its architecture.
    std::vector<std::string> words{argv[2],
                                   "-s",
                                   "8388608",
                                   "-E",
                                   "GCONV_PATH=" MAC_RUNTIME_CHARACTER_SETS,
                                   "-E",
                                   "DEB_HOST_MULTIARCH=aarch64-linux-gnu",
                                   settings.runtime};
    words.insert(words.end(), argv + 1, argv + argc);
    std::vector<std::string> entries = environmentOf(settings, starter);
    ::execve(settings.emulator.c_str(), pointersTo(words).data(), pointersTo(entries).data());
    std::fprintf(stderr, "start-mac-program: %s: %s\n", settings.emulator.c_str(),
                 std::strerror(errno));
    return cannotStart;
}
