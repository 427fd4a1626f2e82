#pragma once

#include <string>

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

/// Has the run loop of the first thread call the function. Any thread.
void postToMainQueue(void* context, void (*function)(void*));

/// Listens for accessibility clients, on a thread of its own. First thread, once.
void serveAccessibilityClients();

/// What an accessibility client gets for its request, as JSON: an array that holds the answer.
///
///   windows                        each visible window, with its elements
///   notifications                  those that were posted since they were last asked for
///   focused, at X Y                the element that has the focus, or is at that place on the
///   screen press, focus, unfocus NUMBER   "done", or why not
///
/// First thread.
[[nodiscard]] std::string answerAccessibilityClient(const std::string& request);

/// Whether the caller whose return address that is belongs to the program, and not to the toolkit.
[[nodiscard]] bool isFromProgram(const void* returnAddress);

} // namespace mac
