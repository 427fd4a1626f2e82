// Accessibility clients in other processes reach this one by a socket in the abstract namespace
// named "mac-accessibility-NAMESPACE-PROCESS": the inode of the process namespace, and the process
// ID in it. A request is a line, and so is its answer.

#include "frameworks/Frameworks.hpp"
#include "loader/Failure.hpp"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <future>
#include <memory>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace mac {

namespace {

std::string socketName() {
    struct stat processes{};
    ::stat("/proc/self/ns/pid", &processes);
    return "mac-accessibility-" + std::to_string(processes.st_ino) + '-' +
           std::to_string(::getpid());
}

int listening() {
    const std::string name = socketName();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    // A leading NUL byte makes the name abstract: no file is created.
    std::memcpy(&address.sun_path[1], name.data(), name.size());
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    const int server = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (server < 0 || ::bind(server, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
        ::listen(server, 1) != 0) {
        fail("accessibility clients cannot be heard: %s", std::strerror(errno));
    }
    return server;
}

struct Exchange {
    std::string request;
    std::promise<std::string> answer;
};

std::string answerOnMainThread(std::string request) {
    Exchange exchange{std::move(request), {}};
    auto answer = exchange.answer.get_future();
    postToMainQueue(&exchange, [](void* context) {
        auto* asked = static_cast<Exchange*>(context);
        asked->answer.set_value(answerAccessibilityClient(asked->request));
    });
    return answer.get();
}

void serve(int client) {
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> requests(::fdopen(client, "r"),
                                                                      &std::fclose);
    char line[256];
    while (requests && std::fgets(&line[0], sizeof line, requests.get()) != nullptr) {
        line[std::strcspn(&line[0], "\n")] = '\0';
        const std::string answer = answerOnMainThread(&line[0]) + '\n';
        ::send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
    }
}

} // namespace

void serveAccessibilityClients() {
    std::thread([server = listening()] {
        // Only the program's own threads handle its signals.
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
        while (true) {
            const int client = ::accept4(server, nullptr, nullptr, SOCK_CLOEXEC);
            if (client < 0) {
                fail("an accessibility client cannot be heard: %s", std::strerror(errno));
            }
            serve(client);
        }
    }).detach();
}

} // namespace mac
