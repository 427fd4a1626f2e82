#pragma once

#include <ctime>
#include <initializer_list>
#include <string>
#include <string_view>

namespace platform {
class UnifiedLog;
struct UncaughtException;
} // namespace platform

namespace kovra {

class LogFile;

/// The program's one diagnostic facility: a plain-text log file that people read, and the system's
/// own log for internal errors. No instances. Logging never throws and never reports a failure:
/// what cannot be written is lost, and the program goes on. What is not said to belong to the main
/// thread may be called from any.
class UninstallerLog {
  public:
    UninstallerLog() = delete;

    /// Appends one line to the log file, with the local time in front. A message with line breaks
    /// is written as it is; one that is not UTF-8 is dropped. The first call opens the file and,
    /// when it has grown beyond 1,000,000 bytes, starts a new one.
    static void file(std::string_view message);

    /// Sends a message to the system's log, at the error level, and nowhere else. Each "%{public}@"
    /// of the format stands for the next argument, and "(null)" for one that is missing. That is
    /// the one conversion known here; all else, a single percent sign too, is text. The format is
    /// expanded before the system sees it: the log daemon finds formats by their place in the
    /// program's file, so they would have to be constants of one section, and the one there is
    /// "%{public}s", for the whole message.
    static void error(std::string_view format,
                      std::initializer_list<std::string_view> arguments = {});

    /// Reports how the previous session ended and which crash reports are new, writes the header
    /// of this one and its marker. Once, at launch, on the main thread. Ends the program when the
    /// system does not give its build or the Mac's model, as `macOSBuild` does.
    static void fileSessionStart();

    /// Writes the session's last line, after which the log takes none but those of a crash, and
    /// removes the marker. Once, at a normal end, on the main thread.
    static void endSession();

    /// Has uncaught exceptions and fatal signals leave a line in the log before the program ends
    /// as it would have; one that comes while such a line is written ends it at once. Once, at
    /// launch, on the main thread, when the application object exists.
    static void installCrashHandlers();

    /// The marker says that a session is under way; one that is found at launch tells of a session
    /// that did not end normally.
    static void removeSessionMarker();

    /// The folder of the log, without a trailing slash, and the files in it. Fixed at first use.
    static const std::string& logDir();
    static const std::string& logFile();
    static const std::string& sessionMarkerFile();

    // What the header says; each asked of the system anew.
    [[nodiscard]] static std::string appVersion();
    [[nodiscard]] static std::string appBuild();
    [[nodiscard]] static std::string macOSVersion();

    /// One that the system does not give ends the program, which says so on standard error.
    [[nodiscard]] static std::string macOSBuild();

    /// A moment as every line and the marker have it: "yyyy-MM-dd HH:mm:ss" in local time.
    [[nodiscard]] static std::string dateFormatter(std::time_t moment);

  private:
    /// The system's log under the program's own name. The first call reads that from the main
    /// bundle and belongs to the main thread. Never destroyed.
    static const platform::UnifiedLog& log();

    /// The log file of this process. Opened by the first line and closed by the process's end;
    /// never destroyed, since workers and crash handlers may write until then.
    static LogFile& fileHandle();

    static void checkPreviousSession();
    static void checkCrashReports();
    static void writeSessionMarker();

    // The two crash handlers. They write behind the session's last line too.
    static void logUncaughtException(const platform::UncaughtException& exception) noexcept;
    static void logSignal(int signal) noexcept;
};

} // namespace kovra
