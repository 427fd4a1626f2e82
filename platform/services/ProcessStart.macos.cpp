#include "platform/services/ProcessStart.hpp"

namespace platform {

void initializeProcess(char**, char**) {}

} // namespace platform
