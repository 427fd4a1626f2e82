#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Config.hpp"
#include "practice-mac/stand-ins/RealTool.hpp"

#include <iostream>

namespace practice {

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

} // namespace practice
