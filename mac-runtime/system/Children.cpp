#include "loader/Environment.hpp"
#include "loader/Failure.hpp"
#include "loader/MachO.hpp"
#include "loader/Symbols.hpp"
#include "system/Errors.hpp"
#include "system/FileNumbers.hpp"
#include "system/SignalNumbers.hpp"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// posix_spawn(2), posix_spawnattr_setflags(3), posix_spawn_file_actions_addinherit_np(3),
// waitpid(2), execv(3) and system(3). The emulator implements vfork as fork, so that the C
// library's posix_spawn could not report a program that does not start; so this file forks and
// executes itself.

namespace mac {

namespace {

constexpr int setSignalDefaults = 0x4;
constexpr int setSignalMask = 0x8;
constexpr int closeOnExecByDefault = 0x4000;
constexpr int knownFlags = setSignalDefaults | setSignalMask | closeOnExecByDefault;

struct Attributes {
    int flags = 0;
    DarwinSignals defaults = 0;
    DarwinSignals mask = 0;
};

struct Action {
    enum class Kind { duplicate, open, inherit };
    Kind kind;
    int descriptor;
    int from = -1;
    std::string path{};
    int flags = 0;
    mode_t mode = 0;
};

using Actions = std::vector<Action>;

struct Spawn {
    const char* path;
    const Actions* actions;
    const Attributes* attributes;
    char* const* arguments;
    char* const* environment;
    sigset_t callersMask;
};

bool isMacProgram(const char* path) {
    std::uint32_t magic = 0;
    const int file = ::open(path, O_RDONLY | O_CLOEXEC);
    const bool is = file >= 0 && ::read(file, &magic, sizeof magic) == sizeof magic &&
                    magic == macho::magic64 && ::access(path, X_OK) == 0;
    ::close(file);
    return is;
}

// Returns 0 or the error.
int applyAction(const Action& action) {
    const auto keepOpen = [&action](int source) {
        return source == action.descriptor ? ::fcntl(source, F_SETFD, 0)
                                           : ::dup2(source, action.descriptor);
    };
    switch (action.kind) {
    case Action::Kind::duplicate: return keepOpen(action.from) < 0 ? errno : 0;
    case Action::Kind::inherit: return keepOpen(action.descriptor) < 0 ? errno : 0;
    case Action::Kind::open: break;
    }
    const int opened = ::open(action.path.c_str(), linuxOpenFlags(action.flags), action.mode);
    if (opened < 0 || keepOpen(opened) < 0) {
        return errno;
    }
    if (opened != action.descriptor) {
        ::close(opened);
    }
    return 0;
}

void closeOthersOnExec(const Actions* actions) {
    std::set<int> kept;
    for (const Action& action : actions == nullptr ? Actions() : *actions) {
        kept.insert(action.descriptor);
    }
    DIR* folder = ::opendir("/proc/self/fd");
    while (const dirent* entry = folder == nullptr ? nullptr : ::readdir(folder)) {
        const int descriptor = std::atoi(&entry->d_name[0]);
        if (entry->d_name[0] != '.' && !kept.contains(descriptor)) {
            ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
        }
    }
    ::closedir(folder);
}

void setSignals(const Spawn& spawn) {
    const Attributes none;
    const Attributes& attributes = spawn.attributes == nullptr ? none : *spawn.attributes;
    const sigset_t defaults = linuxSignals(attributes.defaults);
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action{};
        if (::sigaction(number, nullptr, &action) != 0) {
            continue;
        }
        // A handler of this program must not run in the child, which unblocks signals before exec
        // resets the handlers.
        const bool isRequested =
            (attributes.flags & setSignalDefaults) != 0 && sigismember(&defaults, number) == 1;
        if (isRequested || (action.sa_handler != SIG_IGN && action.sa_handler != SIG_DFL)) {
            ::signal(number, SIG_DFL);
        }
    }
    const sigset_t mask =
        (attributes.flags & setSignalMask) != 0 ? linuxSignals(attributes.mask) : spawn.callersMask;
    ::sigprocmask(SIG_SETMASK, &mask, nullptr);
}

// Executes a Mac program by the starter that started this one.
void executeMacProgram(const Spawn& spawn) {
    const char* starter = programStarter();
    if (starter == nullptr) {
        errno = ENOEXEC;
        return;
    }
    std::vector<const char*> words{starter, spawn.path};
    for (char* const* word = spawn.arguments; *word != nullptr; ++word) {
        words.push_back(*word);
    }
    words.push_back(nullptr);
    ::execve(starter, const_cast<char* const*>(words.data()), spawn.environment);
}

void execute(const Spawn& spawn) {
    if (isMacProgram(spawn.path)) {
        executeMacProgram(spawn);
    } else {
        ::execve(spawn.path, spawn.arguments, spawn.environment);
    }
}

// Runs in the child. Returns the error.
int become(const Spawn& spawn) {
    setSignals(spawn);
    for (const Action& action : spawn.actions == nullptr ? Actions() : *spawn.actions) {
        if (const int error = applyAction(action)) {
            return error;
        }
    }
    if (spawn.attributes != nullptr && (spawn.attributes->flags & closeOnExecByDefault) != 0) {
        closeOthersOnExec(spawn.actions);
    }
    execute(spawn);
    return errno;
}

namespace darwin {

int posix_spawn(pid_t* child, const char* path, Actions* const* actions,
                Attributes* const* attributes, char* const* arguments, char* const* environment) {
    int ends[2];
    if (::pipe2(&ends[0], O_CLOEXEC) != 0) {
        return darwinError(errno);
    }
    // A descriptor above those that the file actions use.
    const int errorPipe = ::fcntl(ends[1], F_DUPFD_CLOEXEC, 256);
    ::close(ends[1]);
    Spawn spawn{.path = path,
                .actions = actions == nullptr ? nullptr : *actions,
                .attributes = attributes == nullptr ? nullptr : *attributes,
                .arguments = arguments,
                .environment = environment,
                .callersMask = {}};
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &spawn.callersMask);
    const pid_t process = ::fork();
    if (process == 0) {
        const int error = become(spawn);
        static_cast<void>(!::write(errorPipe, &error, sizeof error));
        ::_exit(127);
    }
    int error = process < 0 ? errno : 0;
    ::pthread_sigmask(SIG_SETMASK, &spawn.callersMask, nullptr);
    ::close(errorPipe);
    if (process > 0) {
        ssize_t count = 0;
        while ((count = ::read(ends[0], &error, sizeof error)) < 0 && errno == EINTR) {
        }
        if (count > 0) {
            ::waitpid(process, nullptr, 0);
        } else {
            error = 0;
            if (child != nullptr) {
                *child = process;
            }
        }
    }
    ::close(ends[0]);
    return darwinError(error);
}

int attributesInit(Attributes** attributes) {
    *attributes = new Attributes;
    return 0;
}

int attributesDestroy(Attributes** attributes) {
    delete *attributes;
    *attributes = nullptr;
    return 0;
}

int attributesSetFlags(Attributes** attributes, short flags) {
    if ((flags & ~knownFlags) != 0) {
        fail("posix_spawnattr_setflags with %#x, which is not known", flags & ~knownFlags);
    }
    (*attributes)->flags = flags;
    return 0;
}

int attributesSetDefaults(Attributes** attributes, const DarwinSignals* set) {
    (*attributes)->defaults = *set;
    return 0;
}

int attributesSetMask(Attributes** attributes, const DarwinSignals* set) {
    (*attributes)->mask = *set;
    return 0;
}

int actionsInit(Actions** actions) {
    *actions = new Actions;
    return 0;
}

int actionsDestroy(Actions** actions) {
    delete *actions;
    *actions = nullptr;
    return 0;
}

int addDuplicate(Actions** actions, int from, int to) {
    (*actions)->push_back({.kind = Action::Kind::duplicate, .descriptor = to, .from = from});
    return 0;
}

int addOpen(Actions** actions, int descriptor, const char* path, int flags, std::uint16_t mode) {
    (*actions)->push_back({.kind = Action::Kind::open,
                           .descriptor = descriptor,
                           .path = path,
                           .flags = flags,
                           .mode = mode});
    return 0;
}

int addInherit(Actions** actions, int descriptor) {
    (*actions)->push_back({.kind = Action::Kind::inherit, .descriptor = descriptor});
    return 0;
}

// The status has the same layout, with the signal's number in its lowest bits.
pid_t waitpid(pid_t process, int* status, int options) {
    constexpr int noHang = 1;
    if ((options & ~noHang) != 0) {
        fail("waitpid with the options %#x, which are not known", options & ~noHang);
    }
    int ended = 0;
    const pid_t result = checked(::waitpid(process, &ended, options));
    if (status != nullptr && result > 0) {
        *status = WIFSIGNALED(ended) ? (ended & ~0x7f) | darwinSignal(WTERMSIG(ended)) : ended;
    }
    return result;
}

int execv(const char* path, char* const* arguments) {
    execute({.path = path,
             .actions = nullptr,
             .attributes = nullptr,
             .arguments = arguments,
             .environment = programEnvironment(),
             .callersMask = {}});
    return checked(-1);
}

// The shell gets the program's environment.
int system(const char* command) {
    const char* words[] = {"/bin/sh", "-c", command, nullptr};
    pid_t child = -1;
    if (const int error = posix_spawn(&child, words[0], nullptr, nullptr,
                                      const_cast<char* const*>(&words[0]), programEnvironment())) {
        setDarwinErrno(error);
        return -1;
    }
    int status = -1;
    return waitpid(child, &status, 0) == child ? status : -1;
}

} // namespace darwin

} // namespace

Symbols childSymbols() {
    static const Symbol symbols[] = {
        {"_posix_spawn", address(darwin::posix_spawn)},
        {"_posix_spawnattr_init", address(darwin::attributesInit)},
        {"_posix_spawnattr_destroy", address(darwin::attributesDestroy)},
        {"_posix_spawnattr_setflags", address(darwin::attributesSetFlags)},
        {"_posix_spawnattr_setsigdefault", address(darwin::attributesSetDefaults)},
        {"_posix_spawnattr_setsigmask", address(darwin::attributesSetMask)},
        {"_posix_spawn_file_actions_init", address(darwin::actionsInit)},
        {"_posix_spawn_file_actions_destroy", address(darwin::actionsDestroy)},
        {"_posix_spawn_file_actions_adddup2", address(darwin::addDuplicate)},
        {"_posix_spawn_file_actions_addopen", address(darwin::addOpen)},
        {"_posix_spawn_file_actions_addinherit_np", address(darwin::addInherit)},
        {"_execv", address(darwin::execv)},
        {"_system", address(darwin::system)},
        {"_waitpid", address(darwin::waitpid)},
    };
    return symbols;
}

} // namespace mac
