#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Config.hpp"
#include "practice-mac/stand-ins/Spawn.hpp"

#include <iostream>

// The tools that Linux has as well: the host's own programs do the work.
namespace practice {

namespace {

/// Runs the host's own program of the call's name, with the given arguments, on the same standard
/// streams, and waits for it. Gives its status, or 128 and the signal's number.
int runRealTool(const Invocation& call, const std::vector<std::string>& arguments) {
    ProcessOptions options;
    options.program = realToolsFolder + '/' + call.name;
    options.arguments = arguments;
    // pkill and killall tell by their name which of two programs they are.
    options.name = call.path;
    return exitStatus(waitFor(spawn(options)));
}

} // namespace

int runProcessTool(Invocation& call) {
    std::vector<std::string> arguments = call.arguments;
    if (call.name == "pkill") {
        // A Mac's pkill never matches its own ancestors; this process is one of the host's pkill.
        arguments.insert(arguments.begin(), "--ignore-ancestors");
    }
    return runRealTool(call, arguments);
}

int runGetconf(Invocation& call) {
    if (call.arguments == std::vector<std::string>{"DARWIN_USER_CACHE_DIR"}) {
        std::cout << textAt(toolsConfig().get(), "cacheFolder") << '\n';
        return 0;
    }
    if (call.arguments == std::vector<std::string>{"DARWIN_USER_TEMP_DIR"}) {
        std::cout << textAt(toolsConfig().get(), "temporaryFolder") << '\n';
        return 0;
    }
    return runRealTool(call, call.arguments);
}

/// Opens nothing: the transcript says that it was asked for.
int runXdgOpen(Invocation& call) {
    return call.arguments.size() == 1 ? 0 : unknownRequest(call, "the arguments");
}

} // namespace practice
