#pragma once

#include <string>

namespace mac {

/// Starts Foundation for the program in that file: its bundle, its property lists, its threads.
/// AppKit starts when the program asks for its application. First thread, before the program is
/// loaded.
void prepareFrameworks(const char* programPath);

/// Whether this is the process's first thread.
[[nodiscard]] bool isFirstThread();

/// Lets the run loop of the first thread serve the main queue. First thread; further calls do
/// nothing.
void serveMainQueueInRunLoop();

/// Queues a call of the function for the run loop of the first thread. Any thread.
void postToMainQueue(void* context, void (*function)(void*));

/// Listens for accessibility clients, on a thread of its own. First thread, once.
void serveAccessibilityClients();

/// Answers an accessibility client's request with JSON: an array that holds the answer.
///
///   windows                       each visible window, with its elements
///   notifications                 those that were posted since they were last asked for
///   focused                       the number of the element that has the focus, or null
///   at X Y                        the number of the element at that point of the screen, or null
///   press NUMBER                  "done", or the error; so for focus and unfocus
///   application                   what AppKit asks of the application's delegate and window
///   raise CLASS SELECTOR          has that method raise an exception when the program calls it
///
/// First thread.
[[nodiscard]] std::string answerAccessibilityClient(const std::string& request);

/// Whether that return address lies in the program, and not in the toolkit.
[[nodiscard]] bool isFromProgram(const void* returnAddress);

} // namespace mac
