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
/// what cannot be written is lost, and the program goes on. Any thread, unless a function says
/// otherwise.
class UninstallerLog {
  public:
    UninstallerLog() = delete;

    /// Appends one line to the log file, with the local time in front. A message with line breaks
    /// is written unchanged; one that is not UTF-8 is dropped. The first call opens the file and,
    /// when it has grown beyond 1,000,000 bytes, starts a new one.
    static void file(std::string_view message);

    /// Sends a message to the system's log, at the error level, and nowhere else. Each "%{public}@"
    /// of the format stands for the next argument, and "(null)" for one that is missing. No
    /// other conversion is known. The format is expanded here, and the system gets the message as
    /// the argument of "%{public}s": os_log takes its own format only from constants that the
    /// compiler puts into a section of the program for it.
    static void error(std::string_view format,
                      std::initializer_list<std::string_view> arguments = {});

    /// Logs an abnormal end of the previous session and recent crash reports, then this session's
    /// header, and writes its marker. Once, at launch, on the main thread. Ends the program when
    /// the system names no build or model, as `macOSBuild` does.
    static void fileSessionStart();

    /// Writes the session's last line, after which the log accepts crash lines alone, and removes
    /// the marker. Once, at a normal end, on the main thread.
    static void endSession();

    /// Installs handlers that log an uncaught exception or a fatal signal before the program ends
    /// of it. A second fault, while such a line is written, ends the program at once. Once, at
    /// launch, on the main thread, when the application object exists.
    static void installCrashHandlers();

    /// Removes the marker, a file that exists while a session runs: one that is found at launch
    /// means that the previous session ended abnormally.
    static void removeSessionMarker();

    /// The folder of the log, without a trailing slash, and the files in it. Fixed at first use.
    static const std::string& logDir();
    static const std::string& logFile();
    static const std::string& sessionMarkerFile();

    // The values of the header, each read anew.
    [[nodiscard]] static std::string appVersion();
    [[nodiscard]] static std::string appBuild();
    [[nodiscard]] static std::string macOSVersion();

    /// Ends the program, with a message on standard error, when the system names none.
    [[nodiscard]] static std::string macOSBuild();

    /// A moment as "yyyy-MM-dd HH:mm:ss" in local time, the form of every date in the log.
    [[nodiscard]] static std::string dateFormatter(std::time_t moment);

  private:
    /// The system's log under the program's own name. The first call reads that from the main
    /// bundle and belongs to the main thread. Never destroyed.
    static const platform::UnifiedLog& log();

    /// The log file of this process. Opened by the first line and never closed or destroyed, since
    /// other threads and crash handlers may write until the process exits.
    static LogFile& fileHandle();

    static void checkPreviousSession();
    static void checkCrashReports();
    static void writeSessionMarker();

    // The two crash handlers. They also write after the session's last line.
    static void logUncaughtException(const platform::UncaughtException& exception) noexcept;
    static void logSignal(int signal) noexcept;
};

} // namespace kovra
