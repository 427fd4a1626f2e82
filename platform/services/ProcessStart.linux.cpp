#include "platform/services/ProcessStart.hpp"

extern "C" void GSInitializeProcess(int argc, char** argv, char** environment);

namespace platform {

// The program's name alone: GNUstep takes further arguments for documents to open and says so in
// an alert.
void initializeProcess(char** argv, char** environment) {
    GSInitializeProcess(1, argv, environment);
}

} // namespace platform
