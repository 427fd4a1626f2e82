#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kovra {

/// The one way in which the uninstaller runs another program. No instances, no state.
class Shell {
  public:
    Shell() = delete;

    class Result {
      public:
        Result(std::int32_t terminationStatus, std::string data);

        /// The exit status, or the number of the signal that ended the program.
        std::int32_t terminationStatus;

        /// Everything that it wrote to standard output and standard error, in that order of events.
        std::string data;

        /// The same as text: a view of `data`, empty when that is not UTF-8. Lives as long as the
        /// result, unmoved.
        [[nodiscard]] std::string_view output() const;

      private:
        bool isText;
    };

    /// Runs the program at an absolute path with exactly these arguments and waits for its end.
    /// Standard input is the bytes given, or ours when none are. Nothing passes through a shell.
    ///
    /// Throws std::system_error with the system's own code when the program cannot be started; a
    /// program that fails is a result. No time limit: blocks the calling thread, which must not be
    /// the main one, until the program and whoever holds its output have ended.
    [[nodiscard]] static Result run(const std::string& executablePath,
                                    const std::vector<std::string>& arguments,
                                    std::optional<std::string_view> stdinData = std::nullopt);
};

} // namespace kovra
