#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Control.hpp"
#include "practice-mac/stand-ins/Plist.hpp"

#include <iostream>
#include <unistd.h>

namespace practice {

namespace {

constexpr uid_t firstUser = 501;

int show(const Reply& reply) {
    std::cout << reply.output << std::flush;
    std::cerr << reply.error;
    return reply.status;
}

int bootOut(const std::string& domain, const std::string& path) {
    const uid_t user = getuid() == 0 ? firstUser : getuid();
    if (domain != "gui/" + std::to_string(user)) {
        std::cerr << "Boot-out failed: 125: Domain does not support specified action\n";
        return 125;
    }
    // A file that is no agent's, or gone, names no job that could be loaded.
    return show(ask({"bootout", textAt(readPlist(path).get(), "Label")}));
}

} // namespace

int runLaunchctl(Invocation& call) {
    const std::vector<std::string>& words = call.arguments;
    if (words.size() == 3 && words[0] == "bootout") {
        return bootOut(words[1], words[2]);
    }
    if (words.size() == 2 && words[0] == "remove") {
        return show(ask(words));
    }
    if (words.size() == 1 && words[0] == "list") {
        return show(ask(words));
    }
    return unknownRequest(call, "the arguments");
}

} // namespace practice
