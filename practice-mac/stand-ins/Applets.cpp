#include "practice-mac/stand-ins/Applets.hpp"

#include <array>

namespace practice {

namespace {

struct Entry {
    std::string_view name;
    Applet run;
};

constexpr std::array<Entry, 12> applets{{
    {"defaults", runDefaults},
    {"getconf", runGetconf},
    {"killall", runProcessTool},
    {"launchctl", runLaunchctl},
    {"launchd", runLaunchd},
    {"lsregister", runLsregister},
    {"osascript", runOsascript},
    {"pkill", runProcessTool},
    {"PlistBuddy", runPlistBuddy},
    {"security", runSecurity},
    {"tccutil", runTccutil},
    {"xdg-open", runXdgOpen},
}};

} // namespace

Applet findApplet(std::string_view name) {
    for (const Entry& entry : applets) {
        if (entry.name == name) {
            return entry.run;
        }
    }
    return nullptr;
}

} // namespace practice
