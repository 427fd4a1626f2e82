#pragma once

namespace platform::objc {

using FailureHandler = void (*)() noexcept;

/// What is to hear of an exception that is about to leave our code for the frameworks'. It is
/// called inside the catch clause, on the thread that threw. Set once at start.
void setFailureHandler(FailureHandler handler);

/// Called inside a catch clause at the edge of our code: the frameworks either swallow what
/// crosses it or end the program without a trace, so the handler hears of it here and the
/// program aborts.
[[noreturn]] void failAtBoundary() noexcept;

} // namespace platform::objc
