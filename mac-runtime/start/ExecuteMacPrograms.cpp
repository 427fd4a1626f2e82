// Preloaded into every program of a practice Mac (ld.so(8), /etc/ld.so.preload): replaces the C
// library's functions that execute a program, so that a Mach-O program is executed by the starter
// beside this library. The kernel could do it (binfmt_misc), but only for the whole host or, from
// Linux 6.7 on, in a user namespace.

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <unistd.h>
#include <vector>

extern "C" char** environ;

namespace {

constexpr const char* starter = MAC_PROGRAM_STARTER;

template <class Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

// As the kernel requires, only a regular file with execute permission.
bool isMacProgram(const char* path) {
    constexpr std::uint32_t magic = 0xfeedfacf;
    constexpr std::uint32_t arm64 = 0x0100000c;
    const int before = errno;
    std::uint32_t head[2] = {};
    const int file = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    const bool is = file >= 0 && ::read(file, &head[0], sizeof head) == sizeof head &&
                    head[0] == magic && head[1] == arm64 && ::access(path, X_OK) == 0;
    if (file >= 0) {
        ::close(file);
    }
    errno = before;
    return is;
}

// The argument vector of the starter: the program's path, then the program's own arguments.
class StarterArguments {
  public:
    StarterArguments(const char* path, char* const* arguments) {
        words_.push_back(const_cast<char*>(starter));
        words_.push_back(const_cast<char*>(path));
        if (*arguments == nullptr) { // argv[0] must not be missing
            words_.push_back(const_cast<char*>(path));
        }
        for (; *arguments != nullptr; ++arguments) {
            words_.push_back(*arguments);
        }
        words_.push_back(nullptr);
    }

    [[nodiscard]] char* const* get() const { return words_.data(); }

  private:
    std::vector<char*> words_;
};

using Execute = int(const char*, char* const*, char* const*);

int execute(const char* path, char* const* arguments, char* const* environment) {
    static Execute* const real = next<Execute>("execve");
    if (isMacProgram(path)) {
        return real(starter, StarterArguments(path, arguments).get(), environment);
    }
    return real(path, arguments, environment);
}

// Searches as execvp(3) does: each folder of PATH, unless the name contains a slash.
std::string found(const char* file) {
    const char* path = ::getenv("PATH");
    if (std::strchr(file, '/') != nullptr || path == nullptr) {
        return file;
    }
    const std::string folders(path);
    for (std::size_t begin = 0; begin <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', begin), folders.size());
        const std::string folder = folders.substr(begin, end - begin);
        const std::string candidate = (folder.empty() ? "." : folder) + '/' + file;
        if (::access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
        begin = end + 1;
    }
    return file;
}

std::vector<char*> listed(const char* first, std::va_list& more) {
    std::vector<char*> words{const_cast<char*>(first)};
    while (words.back() != nullptr) {
        words.push_back(va_arg(more, char*));
    }
    return words;
}

using Spawn = int(pid_t*, const char*, const posix_spawn_file_actions_t*, const posix_spawnattr_t*,
                  char* const*, char* const*);

int spawn(const char* function, const std::string& path, const char* file, pid_t* child,
          const posix_spawn_file_actions_t* actions, const posix_spawnattr_t* attributes,
          char* const* arguments, char* const* environment) {
    auto* real = next<Spawn>(function);
    if (isMacProgram(path.c_str())) {
        return real(child, starter, actions, attributes,
                    StarterArguments(path.c_str(), arguments).get(), environment);
    }
    return real(child, file, actions, attributes, arguments, environment);
}

} // namespace

extern "C" {

int execve(const char* path, char* const* arguments, char* const* environment) noexcept {
    return execute(path, arguments, environment);
}

int execv(const char* path, char* const* arguments) noexcept {
    return execute(path, arguments, environ);
}

int execvpe(const char* file, char* const* arguments, char* const* environment) noexcept {
    const std::string path = found(file);
    if (isMacProgram(path.c_str())) {
        return execute(path.c_str(), arguments, environment);
    }
    return next<Execute>("execvpe")(file, arguments, environment);
}

int execvp(const char* file, char* const* arguments) noexcept {
    return execvpe(file, arguments, environ);
}

int execl(const char* path, const char* first, ...) noexcept {
    std::va_list more;
    va_start(more, first);
    const std::vector<char*> words = listed(first, more);
    va_end(more);
    return execute(path, words.data(), environ);
}

int execlp(const char* file, const char* first, ...) noexcept {
    std::va_list more;
    va_start(more, first);
    const std::vector<char*> words = listed(first, more);
    va_end(more);
    return execvpe(file, words.data(), environ);
}

int execle(const char* path, const char* first, ...) noexcept {
    std::va_list more;
    va_start(more, first);
    const std::vector<char*> words = listed(first, more);
    char* const* environment = va_arg(more, char* const*);
    va_end(more);
    return execute(path, words.data(), environment);
}

int posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const* arguments,
                char* const* environment) {
    return spawn("posix_spawn", path, path, child, actions, attributes, arguments, environment);
}

int posix_spawnp(pid_t* child, const char* file, const posix_spawn_file_actions_t* actions,
                 const posix_spawnattr_t* attributes, char* const* arguments,
                 char* const* environment) {
    return spawn("posix_spawnp", found(file), file, child, actions, attributes, arguments,
                 environment);
}

} // extern "C"
