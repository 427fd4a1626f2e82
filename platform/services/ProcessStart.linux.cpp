#include "platform/services/ProcessStart.hpp"

extern "C" void GSInitializeProcess(int argc, char** argv, char** environment);

namespace platform {

// Where the display is and who may draw on it, what the toolkit reads, and what sanitizers and the
// counting of lines do in our children too.
bool isKeptOnThisSystem(std::string_view name) {
    return name == "DISPLAY" || name == "XAUTHORITY" || name.starts_with("GNUSTEP_") ||
           name.ends_with("SAN_OPTIONS") || name.ends_with("SAN_SYMBOLIZER_PATH") ||
           name == "LLVM_PROFILE_FILE";
}

// The program's name alone: GNUstep takes further arguments for documents to open and says so in
// an alert.
void initializeProcess(char** argv, char** environment) {
    GSInitializeProcess(1, argv, environment);
}

} // namespace platform
