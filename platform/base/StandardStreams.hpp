#pragma once

namespace platform {

/// Has nothing (/dev/null) stand in for each of the three standard descriptors that this process
/// was started without. Otherwise the next files that it opens would take their numbers, and get
/// what is meant for the terminal. First thing in main, before any other thread.
void openMissingStandardStreams();

} // namespace platform
