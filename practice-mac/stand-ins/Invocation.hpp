#pragma once

#include <optional>
#include <string>
#include <vector>

namespace practice {

/// One run of a tool: how it was called, and what it has read so far.
struct Invocation {
    /// The path that the caller had executed.
    std::string path;
    /// The last component of the file that lies there: which tool this is.
    std::string name;
    /// The arguments behind the program's name.
    std::vector<std::string> arguments;
    /// The whole environment that it was started with, as it came.
    std::vector<std::string> environment;
    /// The working folder; nothing when that is gone.
    std::optional<std::string> folder;
    /// When the run started, in nanoseconds of the monotonic clock.
    long long started = 0;
    /// Standard input, once a tool has read it.
    std::optional<std::string> input;

    /// The run of this process. Throws std::system_error when its own path cannot be read.
    static Invocation current(int count, char** values);

    /// Reads standard input to its end, the first time it is asked for.
    const std::string& standardInput();
};

/// What a tool that meets a request it does not know must do: say so and give status 97.
int unknownRequest(const Invocation& call, const std::string& why);

constexpr int unknownRequestStatus = 97;

} // namespace practice
