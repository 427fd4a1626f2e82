#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace platform {

/// Which of the child's two output streams are collected.
enum class ChildOutput { both, errorsOnly };

struct ChildRequest {
    /// Absolute path of the program; nothing is looked up.
    std::string executablePath;
    /// The argument vector after the path itself.
    std::span<const std::string> arguments;
    /// The child's whole standard input; without it the child inherits ours.
    std::optional<std::string_view> standardInput = std::nullopt;
    /// `errorsOnly` drops what the child writes to standard output.
    ChildOutput collected = ChildOutput::both;
};

struct ChildResult {
    /// The status of a child that was reaped elsewhere.
    static constexpr std::int32_t unknownStatus = -1;

    /// The exit status, or the number of the signal that ended the child.
    std::int32_t terminationStatus = 0;
    /// What was collected, in one stream, in the order in which it was written.
    std::string output;
};

/// Starts a program without a shell, writes its input, collects its output until every writer has
/// closed the stream, and only then waits for it. Input that the child has not read when it and its
/// output have ended is dropped, also when another process holds the pipe. The child begins with
/// the default signal dispositions, an empty signal mask and no descriptor beyond the standard
/// three.
///
/// Throws std::system_error with the system's own code when the program cannot be started, as when
/// its path or an argument holds a NUL byte. Once the child has
/// started, nothing throws but std::bad_alloc, when memory is too small for the output.
/// Blocks the calling thread for the child's whole life, without a time limit; may be called from
/// several threads at once.
[[nodiscard]] ChildResult spawnAndWait(const ChildRequest& request);

/// Takes a child's output piece by piece, cut anywhere. A piece is valid during the call alone.
using OutputReceiver = std::function<void(std::string_view piece)>;

/// The same with a receiver, which is called on this thread, in place of the collecting. Returns
/// the status. What the receiver throws passes through, once the child has ended.
[[nodiscard]] std::int32_t spawnAndWait(const ChildRequest& request, const OutputReceiver& receive);

} // namespace platform
