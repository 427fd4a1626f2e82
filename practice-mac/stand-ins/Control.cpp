#include "practice-mac/stand-ins/Control.hpp"

#include "practice-mac/stand-ins/Config.hpp"
#include "practice-mac/stand-ins/Files.hpp"

#include <cerrno>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace practice {

namespace {

sockaddr_un controlAddress() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = controlFolder + "/launchd.sock";
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

const sockaddr* generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

} // namespace

Reply ask(const std::vector<std::string>& words) {
    const int connection = opened(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
    const sockaddr_un address = controlAddress();
    if (connect(connection, generic(address), sizeof address) != 0) {
        close(connection);
        throw std::runtime_error("launchd does not answer");
    }
    std::string request;
    for (const std::string& word : words) {
        request += word + '\0';
    }
    writeAll(connection, request);
    shutdown(connection, SHUT_WR);
    std::istringstream text(readAll(connection));
    close(connection);
    Reply reply;
    size_t outputSize = 0;
    size_t errorSize = 0;
    text >> reply.status >> outputSize >> errorSize;
    text.get();
    reply.output.resize(outputSize);
    reply.error.resize(errorSize);
    text.read(reply.output.data(), static_cast<std::streamsize>(outputSize));
    text.read(reply.error.data(), static_cast<std::streamsize>(errorSize));
    if (!text) {
        throw std::runtime_error("launchd gave no answer");
    }
    return reply;
}

int listenForRequests() {
    const int listener = opened(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
    const sockaddr_un address = controlAddress();
    if (bind(listener, generic(address), sizeof address) != 0 || listen(listener, 64) != 0 ||
        chmod(static_cast<const char*>(address.sun_path), 0666) != 0) {
        throw std::system_error(errno, std::generic_category(), "launchd.sock");
    }
    return listener;
}

std::vector<std::string> readRequest(int connection) {
    const std::string request = readAll(connection);
    std::vector<std::string> words;
    std::istringstream text(request);
    for (std::string word; std::getline(text, word, '\0');) {
        words.push_back(word);
    }
    return words;
}

void answer(int connection, const Reply& reply) {
    writeAll(connection, std::to_string(reply.status) + ' ' + std::to_string(reply.output.size()) +
                             ' ' + std::to_string(reply.error.size()) + '\n' + reply.output +
                             reply.error);
    close(connection);
}

} // namespace practice
