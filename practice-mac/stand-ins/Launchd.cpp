#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Config.hpp"
#include "practice-mac/stand-ins/Control.hpp"
#include "practice-mac/stand-ins/Files.hpp"
#include "practice-mac/stand-ins/Jobs.hpp"
#include "practice-mac/stand-ins/PrivilegedCommand.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <iostream>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace practice {

namespace {

/// The first process of a practice Mac: keeps the jobs running, answers the tools, collects the
/// system's log, and ends, and everything with it, when the command ends.
class Launchd {
  public:
    explicit Launchd(const Plist& orders)
        : jobs_(itemAt(orders.get(), "jobs")), command_(itemAt(orders.get(), "command")) {}

    int run() {
        listenForEnds();
        requests_ = listenForRequests();
        systemLog_ = listenForLog();
        jobs_.startAll();
        const pid_t process = startCommand();
        while (!commandStatus_) {
            waitForEvents();
            reap(process);
            jobs_.tend();
        }
        return *commandStatus_;
    }

  private:
    Jobs jobs_;
    plist_t command_;
    int ends_ = -1;
    int requests_ = -1;
    int systemLog_ = -1;
    std::optional<int> commandStatus_;

    void listenForEnds() {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGCHLD);
        sigprocmask(SIG_BLOCK, &signals, nullptr);
        ends_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
        // A client that has closed its connection must not end launchd by SIGPIPE.
        std::signal(SIGPIPE, SIG_IGN);
    }

    static int listenForLog() {
        const int log = opened(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0), "socket");
        const sockaddr_un address{.sun_family = AF_UNIX, .sun_path = "/dev/log"};
        if (bind(log, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            chmod("/dev/log", 0666) != 0) {
            throw std::system_error(errno, std::generic_category(), "/dev/log");
        }
        return log;
    }

    pid_t startCommand() {
        ProcessOptions options;
        options.arguments = texts(itemAt(command_, "arguments"));
        options.program = found(options.arguments.at(0));
        options.name = options.arguments.at(0);
        options.arguments.erase(options.arguments.begin());
        options.folder = textAt(command_, "folder");
        options.identity = {static_cast<uid_t>(integerAt(command_, "user")),
                            static_cast<gid_t>(integerAt(command_, "group"))};
        options.environment.emplace();
        for (const Member& setting : members(itemAt(command_, "environment"))) {
            options.environment->push_back(setting.key + '=' + text(setting.value).value_or(""));
        }
        try {
            return spawn(options);
        } catch (const std::system_error& error) {
            std::cerr << "practice-mac: " << error.what() << '\n';
            commandStatus_ = error.code().value() == ENOENT ? 127 : 126;
            return -1;
        }
    }

    /// A command without a slash is looked up where a Mac has its tools.
    static std::string found(const std::string& program) {
        if (program.find('/') == std::string::npos) {
            for (const char* folder : {"/usr/bin/", "/bin/", "/usr/sbin/", "/sbin/"}) {
                if (exists(folder + program)) {
                    return folder + program;
                }
            }
        }
        return program;
    }

    void waitForEvents() {
        std::array<pollfd, 3> sources{{{.fd = ends_, .events = POLLIN, .revents = 0},
                                       {.fd = requests_, .events = POLLIN, .revents = 0},
                                       {.fd = systemLog_, .events = POLLIN, .revents = 0}}};
        int timeout = -1;
        if (const auto due = jobs_.nextDue()) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(*due - Jobs::Clock::now());
            timeout = std::max(0, static_cast<int>(left.count()));
        }
        if (poll(sources.data(), sources.size(), timeout) <= 0) {
            return;
        }
        if (sources[1].revents != 0) {
            serve(accept4(requests_, nullptr, nullptr, SOCK_CLOEXEC));
        }
        if (sources[2].revents != 0) {
            keepLogLine();
        }
    }

    void reap(pid_t process) {
        signalfd_siginfo information{};
        while (read(ends_, &information, sizeof information) > 0) {
        }
        int status = 0;
        for (pid_t ended = 0; (ended = waitpid(-1, &status, WNOHANG)) > 0;) {
            if (ended == process) {
                commandStatus_ = exitStatus(status);
            } else {
                jobs_.processEnded(ended);
            }
        }
    }

    void serve(int connection) {
        if (connection < 0) {
            return;
        }
        const std::vector<std::string> words = readRequest(connection);
        const std::string verb = words.empty() ? "" : words[0];
        if (verb == "bootout" && words.size() == 2) {
            jobs_.bootOut(words[1], connection);
        } else if (verb == "remove" && words.size() == 2) {
            jobs_.remove(words[1], connection);
        } else if (verb == "list") {
            answer(connection, {.status = 0, .output = jobs_.listing(), .error = {}});
        } else if (verb == "run" && words.size() >= 3) {
            runInChild(privilegedRequest(words), connection);
        } else {
            answer(connection,
                   {.status = unknownRequestStatus, .output = {}, .error = "launchd: ?\n"});
        }
    }

    /// A child process waits for the command, which may take any time.
    static void runInChild(const PrivilegedRequest& request, int connection) {
        if (fork() == 0) {
            answer(connection, runPrivileged(request));
            _exit(0);
        }
        close(connection);
    }

    void keepLogLine() {
        std::array<char, 65536> buffer;
        const ssize_t count = recv(systemLog_, buffer.data(), buffer.size(), 0);
        if (count > 0) {
            std::string line(buffer.data(), static_cast<size_t>(count));
            appendToFile(controlFolder + "/syslog", line + '\n');
        }
    }
};

} // namespace

int runLaunchd(Invocation& call) {
    if (call.arguments.size() != 1 || getpid() != 1) {
        return unknownRequest(call, "it is the first process, and takes its orders' file");
    }
    const Plist orders = readPlist(call.arguments[0]);
    if (!orders) {
        return unknownRequest(call, "orders that cannot be read");
    }
    return Launchd(orders).run();
}

} // namespace practice
