#include "platform/services/ProcessStart.hpp"

namespace platform {

// The list that both systems share is the Mac's.
bool isKeptOnThisSystem(std::string_view) {
    return false;
}

void initializeProcess(char**, char**) {}

} // namespace platform
