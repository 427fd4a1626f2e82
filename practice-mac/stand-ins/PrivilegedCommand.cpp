#include "practice-mac/stand-ins/PrivilegedCommand.hpp"

#include "practice-mac/stand-ins/Files.hpp"
#include "practice-mac/stand-ins/Spawn.hpp"
#include "practice-mac/stand-ins/Transcript.hpp"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace practice {

namespace {

std::string contents(int memory) {
    lseek(memory, 0, SEEK_SET);
    std::string bytes = readAll(memory);
    close(memory);
    return bytes;
}

} // namespace

Reply askForPrivileged(const PrivilegedRequest& request) {
    // No path is empty.
    std::vector<std::string> words{"run", request.command, request.folder.value_or("")};
    words.insert(words.end(), request.environment.begin(), request.environment.end());
    return ask(words);
}

PrivilegedRequest privilegedRequest(const std::vector<std::string>& words) {
    PrivilegedRequest request{.command = words.at(1), .folder = {}, .environment = {}};
    if (!words.at(2).empty()) {
        request.folder = words.at(2);
    }
    request.environment.assign(words.begin() + 3, words.end());
    return request;
}

// A Mac's daemon adds nothing of its own to the environment and takes nothing from it.
Reply runPrivileged(const PrivilegedRequest& request) {
    Invocation call;
    call.path = "/bin/sh";
    call.name = "sh";
    call.arguments = {"-c", request.command};
    call.environment = request.environment;
    call.folder = request.folder.value_or("/");
    call.started = monotonicNow();
    ProcessOptions options;
    // A Mac's sh is bash under that name, which takes more from its environment than Debian's.
    options.program = "/bin/bash";
    options.name = call.path;
    options.arguments = call.arguments;
    options.environment = call.environment;
    options.folder = *call.folder;
    options.detached = true;
    // memfds instead of pipes: background processes that the command leaves cannot block the
    // reader.
    options.output = memfd_create("output", MFD_CLOEXEC);
    options.error = memfd_create("error", MFD_CLOEXEC);
    const int status = waitFor(spawn(options));
    Reply reply{exitStatus(status), contents(options.output), contents(options.error)};
    record(call, {.status = reply.status, .signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0});
    return reply;
}

} // namespace practice
