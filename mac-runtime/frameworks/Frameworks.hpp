#pragma once

namespace mac {

/// Starts Foundation for the program in that file: its bundle, its property lists, its threads.
/// AppKit starts when the program asks for its application. First thread, before the program is
/// loaded.
void prepareFrameworks(const char* programPath);

/// Whether this is the process's first thread.
[[nodiscard]] bool isFirstThread();

/// Has the run loop of the first thread do what is sent to the main queue. First thread; further
/// calls do nothing.
void serveMainQueueInRunLoop();

/// Whether the caller whose return address that is belongs to the program, and not to the toolkit.
[[nodiscard]] bool isFromProgram(const void* returnAddress);

} // namespace mac
