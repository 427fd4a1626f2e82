#include "platform/services/ProcessStart.hpp"

namespace platform {

// The common list is all that a Mac needs.
bool isKeptOnThisSystem(std::string_view) {
    return false;
}

void initializeProcess(char**, char**) {}

} // namespace platform
