#pragma once

#include "platform/base/SharedBytes.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kovra {

/// The one way in which the uninstaller runs another program. No instances, no state.
class Shell {
  public:
    Shell() = delete;

    struct Result {
        /// The exit status, or the number of the signal that ended the program.
        std::int32_t terminationStatus = 0;

        /// Everything that it wrote to standard output and standard error, in the order of writing;
        /// empty when it is not UTF-8.
        platform::SharedBytes output;

        /// The same bytes, UTF-8 or not.
        platform::SharedBytes data;
    };

    /// Runs the program at an absolute path with exactly these arguments and waits for its end.
    /// Its standard input is the bytes given, or inherited without them. No shell is involved.
    ///
    /// Throws std::system_error with the system's own code when the program cannot be started, as
    /// when its path or an argument holds a NUL byte; a program that fails is a result. No time
    /// limit: blocks the calling thread, which must not be the main one, until the program and
    /// whoever holds its output have ended.
    [[nodiscard]] static Result run(const std::string& executablePath,
                                    const std::vector<std::string>& arguments,
                                    std::optional<std::string_view> stdinData = std::nullopt);

    /// Takes a part of a program's output: whole lines with their line feeds, of which the very
    /// last may have none. Valid during the call alone.
    using LinesReceiver = std::function<void(std::string_view lines)>;

    struct StreamedResult {
        /// As in `Result`.
        std::int32_t terminationStatus = 0;

        /// Whether the whole output was UTF-8. If not, the receiver was not given all of it, and
        /// the caller drops what it made of the rest.
        bool isUtf8 = true;
    };

    /// The same, but hands the output to a receiver, on this thread, while the program runs. Needs
    /// no more memory than the longest line takes.
    [[nodiscard]] static StreamedResult run(const std::string& executablePath,
                                            const std::vector<std::string>& arguments,
                                            const LinesReceiver& receive);
};

} // namespace kovra
