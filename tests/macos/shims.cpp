// A program for the Mac that compares the system's behaviour with Apple's headers, with which it is
// compiled: shims SUBJECT, or shims child PROGRAM, which only runs that program. It prints each
// expectation that fails, and exits with their number.

#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/services/PropertyListSerialization.hpp"
#include "platform/services/SystemSymbols.macos.hpp"

#include <dispatch/dispatch.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <pthread.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern "C" char** environ;

namespace {

int failures = 0;

void expect(bool holds, const char* text, int line) {
    if (!holds) {
        std::printf("line %d: %s (errno %d)\n", line, text, errno);
        ++failures;
    }
}

#define EXPECT(condition) expect((condition), #condition, __LINE__)

std::string scratch(const char* name) {
    const char* folder = std::getenv("TMPDIR");
    return std::string(folder == nullptr ? "/tmp" : folder) + "/shims-" + name;
}

void errors() {
    EXPECT(::open("/nowhere/at/all", O_RDONLY) == -1 && errno == ENOENT);
    const std::string folder = scratch("errors");
    EXPECT(::mkdir(folder.c_str(), 0755) == 0);
    EXPECT(::mkdir((folder + "/inner").c_str(), 0755) == 0);
    EXPECT(::rmdir(folder.c_str()) == -1 && errno == ENOTEMPTY);
    EXPECT(::unlink(folder.c_str()) == -1 && errno == EPERM);
    EXPECT(::symlink("inner", (folder + "/link").c_str()) == 0);
    const int flags = O_RDONLY | O_NOFOLLOW | O_DIRECTORY;
    EXPECT(::open((folder + "/link").c_str(), flags) == -1 && errno == ELOOP);
    const std::string endless(5000, 'a');
    EXPECT(::open(endless.c_str(), O_RDONLY) == -1 && errno == ENAMETOOLONG);
    int ends[2];
    EXPECT(::pipe(&ends[0]) == 0 && ::fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0);
    EXPECT((::fcntl(ends[0], F_GETFL) & O_NONBLOCK) != 0);
    char byte = 0;
    EXPECT(::read(ends[0], &byte, 1) == -1 && errno == EAGAIN);
    // The pipe has no reader, and no signal is raised.
    ::close(ends[0]);
    EXPECT(::fcntl(ends[1], F_SETNOSIGPIPE, 1) == 0);
    EXPECT(::write(ends[1], "x", 1) == -1 && errno == EPIPE);
    char text[64];
    EXPECT(::strerror_r(4711, &text[0], sizeof text) == EINVAL);
    EXPECT(std::string_view(&text[0]) == "Unknown error: 4711");
    EXPECT(::strerror_r(ENOTEMPTY, &text[0], 5) == ERANGE);
}

void files() {
    const std::string folder = scratch("files");
    EXPECT(::mkdir(folder.c_str(), 0750) == 0);
    const std::string path = folder + "/a file";
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0640);
    EXPECT(file >= 0 && ::write(file, "twelve bytes", 12) == 12 && ::close(file) == 0);
    struct stat status{};
    EXPECT(::stat(path.c_str(), &status) == 0);
    EXPECT(S_ISREG(status.st_mode) && (status.st_mode & 0777) == 0640);
    EXPECT(status.st_size == 12 && status.st_nlink == 1 && status.st_uid == ::getuid());
    EXPECT(status.st_birthtimespec.tv_sec > 1700000000);
    EXPECT(status.st_mtimespec.tv_sec >= status.st_birthtimespec.tv_sec);
    struct stat other{};
    EXPECT(::fstatat(AT_FDCWD, folder.c_str(), &other, AT_SYMLINK_NOFOLLOW) == 0);
    EXPECT(S_ISDIR(other.st_mode) && other.st_ino != status.st_ino);
    // Folders, files and links of a volume have its device, by every call.
    EXPECT(status.st_dev == other.st_dev);
    const std::string link = folder + "/link";
    EXPECT(::symlink(path.c_str(), link.c_str()) == 0 && ::lstat(link.c_str(), &status) == 0);
    EXPECT(S_ISLNK(status.st_mode) && status.st_dev == other.st_dev);
    EXPECT(::stat(link.c_str(), &status) == 0 && status.st_dev == other.st_dev);
    const int within = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    EXPECT(::fstatat(within, "a file", &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           status.st_dev == other.st_dev);
    const int opened = ::openat(within, "a file", O_RDONLY);
    EXPECT(::fstat(opened, &status) == 0 && status.st_dev == other.st_dev);
    ::close(opened);
    ::close(within);
    DIR* listing = ::opendir(folder.c_str());
    bool found = false;
    while (const dirent* entry = ::readdir(listing)) {
        if (std::string_view(&entry->d_name[0], entry->d_namlen) == "a file") {
            found = entry->d_type == DT_REG && entry->d_ino == status.st_ino;
        }
    }
    ::closedir(listing);
    EXPECT(found);
}

volatile sig_atomic_t handled = 0;

void signals() {
    struct sigaction action{};
    action.sa_handler = [](int number) { handled = number; };
    struct sigaction old{};
    for (const int number : {SIGUSR1, SIGUSR2, SIGBUS, SIGCHLD, SIGTERM}) {
        EXPECT(::sigaction(number, &action, &old) == 0);
        EXPECT(::raise(number) == 0 && handled == number);
        EXPECT(::sigaction(number, &old, nullptr) == 0);
    }
    sigset_t set;
    sigset_t pending;
    sigemptyset(&set);
    sigaddset(&set, SIGUSR1);
    EXPECT(::pthread_sigmask(SIG_BLOCK, &set, nullptr) == 0 && ::raise(SIGUSR1) == 0);
    EXPECT(::sigpending(&pending) == 0 && pending == set);
    int arrived = 0;
    EXPECT(::sigwait(&set, &arrived) == 0 && arrived == SIGUSR1);
}

void* stackOf(void* result) {
    // Nearly all of the stack of 512 KB can be used, as on a Mac.
    volatile char room[460 * 1024];
    room[0] = 1;
    *static_cast<bool*>(result) = room[0] == 1;
    return nullptr;
}

thread_local int perThread = 17;

void threads() {
    pthread_t thread{};
    bool fits = false;
    EXPECT(::pthread_create(&thread, nullptr, stackOf, &fits) == 0);
    EXPECT(::pthread_join(thread, nullptr) == 0 && fits);
    perThread = 4;
    int seen = 0;
    int isMain = 1;
    std::thread([&] {
        seen = perThread;
        isMain = ::pthread_main_np();
    }).join();
    EXPECT(seen == 17 && perThread == 4 && isMain == 0 && ::pthread_main_np() != 0);
}

void memory() {
    EXPECT(::sysconf(_SC_PAGESIZE) == 16384);
    void* place = ::mmap(nullptr, 100, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANON, -1, 0);
    EXPECT(place != MAP_FAILED && reinterpret_cast<std::uintptr_t>(place) % 16384 == 0);
    const int file = ::open("/etc/passwd", O_RDONLY);
    EXPECT(::mmap(nullptr, 100, PROT_READ, MAP_PRIVATE, file, 4096) == MAP_FAILED &&
           errno == EINVAL);
    EXPECT(::mmap(nullptr, 100, PROT_READ, MAP_PRIVATE, file, 0) != MAP_FAILED);
}

int wait(pid_t child) {
    int status = 0;
    EXPECT(::waitpid(child, &status, 0) == child);
    return status;
}

void children() {
    pid_t child = 0;
    char shell[] = "/bin/sh";
    char command[] = "-c";
    char ends[] = "kill -USR1 $$";
    char* words[] = {&shell[0], &command[0], &ends[0], nullptr};
    EXPECT(::posix_spawn(&child, shell, nullptr, nullptr, &words[0], environ) == 0);
    const int status = wait(child);
    EXPECT(WIFSIGNALED(status) && WTERMSIG(status) == SIGUSR1);
    EXPECT(::posix_spawn(&child, "/nowhere", nullptr, nullptr, &words[0], environ) == ENOENT);
    EXPECT(::posix_spawn(&child, "/etc/passwd", nullptr, nullptr, &words[0], environ) == EACCES);
}

void exceptions() {
    int caught = 0;
    try {
        throw std::runtime_error("thrown");
    } catch (const std::exception& error) {
        caught = std::string_view(error.what()) == "thrown" ? 1 : 0;
    }
    EXPECT(caught == 1);
}

// A concurrent queue starts each piece of work although all before it wait for that one.
void queues() {
    static dispatch_queue_t all = dispatch_get_global_queue(QOS_CLASS_UTILITY, 0);
    static pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
    static pthread_cond_t changed = PTHREAD_COND_INITIALIZER;
    static int present = 0;
    constexpr int count = 8;
    for (int i = 0; i < count; ++i) {
        dispatch_async_f(all, nullptr, [](void*) {
            ::pthread_mutex_lock(&lock);
            ++present;
            ::pthread_cond_broadcast(&changed);
            while (present < count) {
                ::pthread_cond_wait(&changed, &lock);
            }
            ::pthread_mutex_unlock(&lock);
        });
    }
    ::pthread_mutex_lock(&lock);
    while (present < count) {
        ::pthread_cond_wait(&changed, &lock);
    }
    ::pthread_mutex_unlock(&lock);
    EXPECT(present == count);
}

// A serial queue runs one piece of work at a time, in order; the work knows its label and QoS
// class.
void serialQueue() {
    auto* const attributes =
        dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, QOS_CLASS_USER_INITIATED, 0);
    auto* const queue = dispatch_queue_create("ai.kovra.shims.serial", attributes);
    static std::atomic<int> running = 0;
    static std::atomic<int> next = 0;
    constexpr int count = 1000;
    static int numbers[count];
    for (int i = 0; i < count; ++i) {
        numbers[i] = i;
        dispatch_async_f(queue, &numbers[i], [](void* number) {
            EXPECT(++running == 1);
            EXPECT(*static_cast<int*>(number) == next);
            EXPECT(std::string_view(dispatch_queue_get_label(nullptr)) == "ai.kovra.shims.serial");
            EXPECT(qos_class_self() == QOS_CLASS_USER_INITIATED);
            --running;
            ++next;
        });
    }
    while (next < count) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void unknownQueueClass() {
    dispatch_async_f(dispatch_get_global_queue(0x42, 0), nullptr, [](void*) {});
}

// Some of them are read here; on a Mac none is.
void malformedLists() {
    const std::string list = "<plist version=\"1.0\"><string>a</string></plist>";
    int read = 0;
    for (const std::string& bytes :
         {list + "<plist version=\"1.0\"/>",
          std::string("<plist version=\"1.0\"><integer>1x</integer></plist>"),
          std::string("<plist version=\"1.0\"><date>today</date></plist>")}) {
        read += platform::parsePropertyList(bytes) ? 1 : 0;
    }
    EXPECT(read > 0);
}

#define LOG(text, ...)                                                                             \
    do {                                                                                           \
        static const char format[] __attribute__((section("__TEXT,__oslogstring"))) = text;        \
        alignas(16) std::uint8_t buffer[__builtin_os_log_format_buffer_size(text, __VA_ARGS__)];   \
        __builtin_os_log_format(buffer, text, __VA_ARGS__);                                        \
        _os_log_error_impl(&__dso_handle, log, 0x10, format, buffer, sizeof buffer);               \
    } while (false)

void systemLog() {
    auto* log = os_log_create("ai.kovra.shims", "test");
    EXPECT(os_log_type_enabled(log, 0x10));
    LOG("%{public}s and %s, %d and %{private}d, 100%%", "shown", "hidden", 42, 43);
}

void environment() {
    for (char** entry = environ; *entry != nullptr; ++entry) {
        std::printf("%s\n", *entry);
    }
}

// Ends like the uninstaller, whose log names the exception.
void logUncaught() {
    kovra::UninstallerLog::installCrashHandlers();
    kovra::UninstallerLog::fileSessionStart();
}

void uncaughtError() {
    logUncaught();
    throw std::runtime_error("for the test");
}

void uncaughtNumber() {
    logUncaught();
    throw 42;
}

// A call that is an error on a Mac too, or unknown here, ends the process.
void inputSourcesOffTheMainThread() {
    std::thread([] { TISCopyCurrentKeyboardInputSource(); }).join();
}

void unknownOpenFlag() {
    ::open("/etc/passwd", O_RDONLY | O_EVTONLY);
}

struct Subject {
    std::string_view name;
    void (*run)();
};

constexpr Subject subjects[] = {{"errors", errors},
                                {"files", files},
                                {"signals", signals},
                                {"threads", threads},
                                {"memory", memory},
                                {"children", children},
                                {"exceptions", exceptions},
                                {"queues", queues},
                                {"serial-queue", serialQueue},
                                {"system-log", systemLog},
                                {"malformed-lists", malformedLists},
                                {"environment", environment},
                                {"uncaught-error", uncaughtError},
                                {"uncaught-number", uncaughtNumber},
                                {"input-sources-off-the-main-thread", inputSourcesOffTheMainThread},
                                {"unknown-open-flag", unknownOpenFlag},
                                {"unknown-queue-class", unknownQueueClass}};

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string_view(argv[1]) == "child") {
        pid_t child = 0;
        char* words[] = {argv[2], nullptr};
        EXPECT(::posix_spawn(&child, argv[2], nullptr, nullptr, &words[0], environ) == 0);
        EXPECT(wait(child) == 0);
        return failures;
    }
    for (const Subject& subject : subjects) {
        if (argc == 2 && subject.name == argv[1]) {
            subject.run();
            std::fflush(stdout);
            return failures;
        }
    }
    return 99;
}
