#pragma once

#include "practice-mac/stand-ins/Invocation.hpp"

#include <string_view>

namespace practice {

/// A tool's program: does what was asked and gives the exit status.
using Applet = int (*)(Invocation& call);

/// The program of the tool of that name, or nullptr when there is none.
Applet findApplet(std::string_view name);

int runDefaults(Invocation& call);
int runGetconf(Invocation& call);
int runLaunchctl(Invocation& call);
int runLaunchd(Invocation& call);
int runLsregister(Invocation& call);
int runOsascript(Invocation& call);
int runPlistBuddy(Invocation& call);
int runSecurity(Invocation& call);
int runTccutil(Invocation& call);
int runXdgOpen(Invocation& call);
/// pkill and killall: the host's own, moved aside.
int runProcessTool(Invocation& call);

} // namespace practice
