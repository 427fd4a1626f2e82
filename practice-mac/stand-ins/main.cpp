#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Fault.hpp"
#include "practice-mac/stand-ins/Files.hpp"
#include "practice-mac/stand-ins/Transcript.hpp"

#include <bit>
#include <csignal>
#include <exception>
#include <iostream>
#include <sys/auxv.h>
#include <unistd.h>

namespace practice {

Invocation Invocation::current(int count, char** values) {
    Invocation call;
    // argv[0] is whatever the caller passes; the executed path and the file that it resolves to are
    // reliable. A path here may lead over symbolic links that a Mac does not have.
    call.path = std::bit_cast<const char*>(getauxval(AT_EXECFN));
    const std::string file = linkTarget("/proc/self/exe");
    call.name = file.substr(file.rfind('/') + 1);
    call.arguments.assign(values + (count > 0 ? 1 : 0), values + count);
    for (char** entry = environ; *entry != nullptr; ++entry) {
        call.environment.emplace_back(*entry);
    }
    call.folder = workingFolder();
    call.started = monotonicNow();
    return call;
}

const std::string& Invocation::standardInput() {
    if (!input) {
        input = readAll(STDIN_FILENO);
    }
    return *input;
}

int unknownRequest(const Invocation& call, const std::string& why) {
    std::cerr << call.name << ": the practice Mac's stand-in does not know this: " << why;
    for (const std::string& argument : call.arguments) {
        std::cerr << ' ' << argument;
    }
    std::cerr << '\n';
    return unknownRequestStatus;
}

namespace {

int runTool(Invocation& call, Applet applet) {
    std::optional<Fault> fault = Fault::ordered(call);
    Outcome outcome;
    if (fault && fault->ends()) {
        outcome = fault->end();
    } else {
        if (fault) {
            fault->begin();
        }
        outcome.status = applet(call);
        std::cout.flush();
        if (fault) {
            outcome = fault->finish(outcome);
        }
    }
    record(call, outcome);
    if (outcome.signal != 0) {
        std::signal(outcome.signal, SIG_DFL);
        std::raise(outcome.signal);
    }
    return outcome.status;
}

} // namespace

} // namespace practice

int main(int argc, char** argv) {
    try {
        practice::Invocation call = practice::Invocation::current(argc, argv);
        const practice::Applet applet = practice::findApplet(call.name);
        if (applet == nullptr) {
            return practice::unknownRequest(call, "no tool has this name");
        }
        // launchd is not a tool run: no fault, no line in the transcript.
        return call.name == "launchd" ? applet(call) : practice::runTool(call, applet);
    } catch (const std::exception& error) {
        std::cerr << "practice Mac: " << error.what() << '\n';
        return practice::unknownRequestStatus;
    }
}
