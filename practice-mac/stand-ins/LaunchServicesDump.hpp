#pragma once

#include <plist/plist.h>

namespace practice {

/// Prints the registry in the form of the real tool's dump. `registry` holds `records`, and in
/// `filler_bytes` how much of the rest of a Mac's registry stands around them. Gives false when
/// nobody reads on.
bool printLaunchServices(plist_t registry);

} // namespace practice
