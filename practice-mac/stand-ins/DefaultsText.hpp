#pragma once

#include <plist/plist.h>
#include <string>

namespace practice {

/// A value as `defaults read` prints it: the old text form, strings bare when they stand alone.
/// `depth` is how many containers the value stands in.
std::string defaultsText(plist_t node, int depth = 0);

} // namespace practice
