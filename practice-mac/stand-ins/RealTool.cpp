#include "practice-mac/stand-ins/RealTool.hpp"

#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Config.hpp"
#include "practice-mac/stand-ins/Spawn.hpp"

namespace practice {

int runRealTool(const Invocation& call, const std::vector<std::string>& arguments) {
    ProcessOptions options;
    options.program = realToolsFolder + '/' + call.name;
    options.arguments = arguments;
    // pkill and killall tell by their name which of two programs they are.
    options.name = call.path;
    return exitStatus(waitFor(spawn(options)));
}

int runProcessTool(Invocation& call) {
    std::vector<std::string> arguments = call.arguments;
    if (call.name == "pkill") {
        // A Mac's pkill never matches those that called it; so this waiting process is spared too.
        arguments.insert(arguments.begin(), "--ignore-ancestors");
    }
    return runRealTool(call, arguments);
}

} // namespace practice
