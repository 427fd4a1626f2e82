#include "platform/services/ProcessStart.hpp"

extern "C" void GSInitializeProcess(int argc, char** argv, char** environment);

namespace platform {

// The display and its authority, GNUstep's settings, and those of sanitizers and of the measurement
// of coverage, which child processes need too.
bool isKeptOnThisSystem(std::string_view name) {
    return name == "DISPLAY" || name == "XAUTHORITY" || name.starts_with("GNUSTEP_") ||
           name.ends_with("SAN_OPTIONS") || name.ends_with("SAN_SYMBOLIZER_PATH") ||
           name == "LLVM_PROFILE_FILE";
}

// Without the arguments: GNUstep takes them for documents to open, and shows an alert.
void initializeProcess(char** argv, char** environment) {
    GSInitializeProcess(1, argv, environment);
}

} // namespace platform
