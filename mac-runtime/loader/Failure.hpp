#pragma once

namespace mac {

/// Prints on standard error what the runtime cannot do, and ends the process by SIGABRT, as dyld
/// does. The format is printf's. Any thread.
[[noreturn, gnu::format(printf, 1, 2)]] void fail(const char* format, ...);

} // namespace mac
