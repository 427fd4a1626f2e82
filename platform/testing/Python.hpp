#pragma once

#include "platform/base/ChildProcess.hpp"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace platform::testing {

/// What a Python program prints when it is fed `input`; throws with its words when it fails. Its
/// parsers are the second opinion on ours.
inline std::string python(const std::string& program, std::string_view input = {}) {
    const std::vector<std::string> arguments{"-c", program};
    auto ended = spawnAndWait({"/usr/bin/python3", arguments, input});
    if (ended.terminationStatus != 0) {
        throw std::runtime_error("python3: " + ended.output);
    }
    return ended.output;
}

} // namespace platform::testing
