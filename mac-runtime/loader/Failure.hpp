#pragma once

namespace mac {

/// Says on standard error what the runtime cannot do, and ends the process as a Mac's loader does:
/// by SIGABRT. The format is printf's. Any thread.
[[noreturn, gnu::format(printf, 1, 2)]] void fail(const char* format, ...);

} // namespace mac
