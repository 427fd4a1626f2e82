#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace kovra {

/// The program's one diagnostic facility: a plain-text log file that people read, and the system's
/// own log for internal errors. No instances; every member may be called from any thread, never
/// throws and never reports a failure: what cannot be written is lost, and the program goes on.
class UninstallerLog {
  public:
    UninstallerLog() = delete;

    /// Appends one line to the log file, with the local time in front. A message with line breaks
    /// is written as it is; one that is not UTF-8 is dropped. The first call opens the file and,
    /// when it has grown beyond 1,000,000 bytes, starts a new one.
    static void file(std::string_view message);

    /// Sends a message to the system's log, and nowhere else. Each "%{public}@" of the format
    /// stands for the next argument.
    static void error(std::string_view format,
                      std::initializer_list<std::string_view> arguments = {});

    /// Reports how the previous session ended and which crash reports are new, writes the header
    /// of this one and its marker. Once, at launch.
    static void fileSessionStart();

    /// Writes the session's last line, after which the log takes no other, and removes the
    /// marker. Once, at a normal end, on the main thread.
    static void endSession();

    /// Has uncaught exceptions and fatal signals leave a line in the log before the program ends
    /// as it would have. Once, at launch, on the main thread, when the application object exists.
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
    [[nodiscard]] static std::string macOSBuild();

  private:
    static void checkPreviousSession();
    static void checkCrashReports();
    static void writeSessionMarker();
};

} // namespace kovra
