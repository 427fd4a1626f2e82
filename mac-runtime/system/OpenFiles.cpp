#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"
#include "system/Errors.hpp"
#include "system/FileNumbers.hpp"

#include <atomic>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

// open(2), fcntl(2), <sys/fcntl.h>, poll(2), pipe(2) and other calls on descriptors. The variadic
// ones get the address of their variable arguments (Trampolines.S).

namespace mac {

namespace {

constexpr int accessModes = 3;
constexpr int noFollow = 0x100;
constexpr int create = 0x200;

constexpr NumberPair openFlags[] = {
    {0x4, O_NONBLOCK},       {0x8, O_APPEND},        {0x80, O_SYNC},  {noFollow, O_NOFOLLOW},
    {create, O_CREAT},       {0x400, O_TRUNC},       {0x800, O_EXCL}, {0x20000, O_NOCTTY},
    {0x100000, O_DIRECTORY}, {0x1000000, O_CLOEXEC},
};

} // namespace

int linuxOpenFlags(int flags) {
    return (flags & accessModes) | linuxFlags(flags & ~accessModes, openFlags, "open");
}

int darwinOpenFlags(int flags) {
    int result = flags & accessModes;
    for (const auto& [darwin, ofLinux] : openFlags) {
        if ((flags & ofLinux) == ofLinux) {
            result |= darwin;
        }
    }
    return result;
}

namespace {

// With O_NOFOLLOW a symbolic link gives ELOOP on a Mac, whatever the other flags; with O_DIRECTORY
// too, Linux gives ENOTDIR.
int opened(int folder, const char* path, int flags, mode_t mode) {
    const int descriptor = ::openat(folder, path, linuxOpenFlags(flags), mode);
    if (descriptor < 0) {
        const int error = errno;
        struct stat status{};
        const bool isLink = error == ENOTDIR && (flags & noFollow) != 0 &&
                            ::fstatat(folder, path, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
                            S_ISLNK(status.st_mode);
        setDarwinErrno(isLink ? static_cast<int>(DarwinError::tooManyLinks) : darwinError(error));
    }
    return descriptor;
}

// Descriptors with F_SETNOSIGPIPE: a write into a pipe without a reader gives EPIPE and no signal.
constexpr int mostDescriptors = 4096;
std::atomic<bool> quietPipes[mostDescriptors];

bool isQuietPipe(int descriptor) {
    return descriptor >= 0 && descriptor < mostDescriptors && quietPipes[descriptor];
}

void setQuietPipe(int descriptor, bool isQuiet) {
    if (descriptor >= 0 && descriptor < mostDescriptors) {
        quietPipes[descriptor] = isQuiet;
    } else if (isQuiet) {
        fail("F_SETNOSIGPIPE for the descriptor %d", descriptor);
    }
}

// Blocks SIGPIPE on this thread during the write, and consumes the one that the write raises.
ssize_t writeQuietly(int descriptor, const void* bytes, std::size_t size) {
    sigset_t pipeSignal;
    sigset_t before;
    sigset_t pending;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    sigpending(&pending);
    const bool wasPending = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);
    const ssize_t written = checked(::write(descriptor, bytes, size));
    if (written < 0 && errno == EPIPE && !wasPending) {
        const timespec noTime{};
        sigtimedwait(&pipeSignal, nullptr, &noTime);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return written;
}

int duplicated(int from, int to) {
    if (to >= 0) {
        setQuietPipe(to, isQuietPipe(from));
    }
    return to;
}

mode_t modeFor(int flags, const std::uint64_t* further) {
    return (flags & create) != 0 ? static_cast<mode_t>(*further) : 0;
}

} // namespace

extern "C" {

void mac_open();
void mac_openat();
void mac_fcntl();

int mac_open_with(const char* path, int flags, const std::uint64_t* further) {
    return opened(AT_FDCWD, path, flags, modeFor(flags, further));
}

int mac_openat_with(int folder, const char* path, int flags, const std::uint64_t* further) {
    return opened(linuxFolder(folder), path, flags, modeFor(flags, further));
}

int mac_fcntl_with(int descriptor, int command, const std::uint64_t* further) {
    const auto argument = [further] { return static_cast<int>(*further); };
    switch (command) {
    case 0: return duplicated(descriptor, checked(::fcntl(descriptor, F_DUPFD, argument())));
    case 1: return checked(::fcntl(descriptor, F_GETFD));
    case 2: return checked(::fcntl(descriptor, F_SETFD, argument()));
    case 3: {
        const int flags = checked(::fcntl(descriptor, F_GETFL));
        return flags < 0 ? flags : darwinOpenFlags(flags);
    }
    case 4: return checked(::fcntl(descriptor, F_SETFL, linuxOpenFlags(argument())));
    case 51: return checked(::fsync(descriptor)); // F_FULLFSYNC
    case 67:
        return duplicated(descriptor, checked(::fcntl(descriptor, F_DUPFD_CLOEXEC, argument())));
    case 73:
        setQuietPipe(descriptor, argument() != 0); // F_SETNOSIGPIPE
        return 0;
    default: fail("fcntl with the command %d, which is not known", command);
    }
}

} // extern "C"

namespace {

namespace darwin {

ssize_t read(int descriptor, void* bytes, std::size_t size) {
    return checked(::read(descriptor, bytes, size));
}

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
    return isQuietPipe(descriptor) ? writeQuietly(descriptor, bytes, size)
                                   : checked(::write(descriptor, bytes, size));
}

int close(int descriptor) {
    setQuietPipe(descriptor, false);
    return checked(::close(descriptor));
}

int dup(int descriptor) {
    return duplicated(descriptor, checked(::dup(descriptor)));
}

int dup2(int from, int to) {
    return duplicated(from, checked(::dup2(from, to)));
}

int pipe(int* ends) {
    return checked(::pipe(ends));
}

// The event bits up to POLLNVAL are the same.
int poll(pollfd* descriptors, unsigned count, int timeout) {
    constexpr short alike = 0x3f;
    for (unsigned i = 0; i < count; ++i) {
        if ((descriptors[i].events & ~alike) != 0) {
            fail("poll for the events %#x, which are not known", descriptors[i].events);
        }
    }
    return checked(::poll(descriptors, count, timeout));
}

int fsync(int descriptor) {
    return checked(::fsync(descriptor));
}

off_t lseek(int descriptor, off_t offset, int whence) {
    if (whence > SEEK_END) {
        fail("lseek from %d, which is not known", whence);
    }
    return checked(::lseek(descriptor, offset, whence));
}

int ftruncate(int descriptor, off_t size) {
    return checked(::ftruncate(descriptor, size));
}

int isatty(int descriptor) {
    const int result = ::isatty(descriptor);
    if (result == 0) {
        setDarwinErrno(darwinError(errno));
    }
    return result;
}

} // namespace darwin

} // namespace

Symbols openFileSymbols() {
    static const Symbol symbols[] = {
        {"_open", address(mac_open)},
        {"_openat", address(mac_openat)},
        {"_fcntl", address(mac_fcntl)},
        {"_read", address(darwin::read)},
        {"_write", address(darwin::write)},
        {"_close", address(darwin::close)},
        {"_dup", address(darwin::dup)},
        {"_dup2", address(darwin::dup2)},
        {"_pipe", address(darwin::pipe)},
        {"_poll", address(darwin::poll)},
        {"_fsync", address(darwin::fsync)},
        {"_lseek", address(darwin::lseek)},
        {"_ftruncate", address(darwin::ftruncate)},
        {"_isatty", address(darwin::isatty)},
    };
    return symbols;
}

} // namespace mac
