#pragma once

namespace platform {

/// Makes the system's libraries ready for this process. First thing in main, before any other
/// call of a service.
void initializeProcess(char** argv, char** environment);

} // namespace platform
