#include "kovraUninstaller/logging/CrashHandlers.hpp"
#include "kovraUninstaller/logging/CrashReports.hpp"
#include "platform/base/ChildProcess.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/testing/Environment.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <sstream>

namespace kovra {
namespace {

using platform::testing::contentOf;
using platform::testing::isThere;
using platform::testing::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

constexpr const char* crashFrom = "‼️ CRASH: ";

// Sessions of crashing_program, which ends as its argument says; those of a test share a home.
class Sessions : public ::testing::Test {
  protected:
    Sessions() { ::setenv("HOME", home.path().c_str(), 1); }

    // The command line of crashing_program. The tests of the Mac's program name one that runs
    // there.
    static std::string program() {
        const char* named = std::getenv("CRASHING_PROGRAM");
        return named != nullptr ? named : CRASHING_PROGRAM;
    }

    // Returns the exit status, or the number of the signal.
    static int session(const std::string& ending) {
        return shell("exec " + program() + " '" + ending + "'");
    }

    static int shell(const std::string& script) {
        const std::array<std::string, 2> arguments{"-c", script};
        return platform::spawnAndWait({.executablePath = "/bin/sh", .arguments = arguments})
            .terminationStatus;
    }

    // The first line that a command prints.
    static std::string printed(const std::string& command) {
        const std::array<std::string, 2> arguments{"-c", command};
        const auto ended = platform::spawnAndWait({"/bin/sh", arguments});
        return ended.output.substr(0, ended.output.find('\n'));
    }

    [[nodiscard]] std::vector<std::string> namesInFolder() const {
        return platform::namesInFolder(folder).value_or(std::vector<std::string>());
    }

    [[nodiscard]] std::string log() const { return contentOf(logFile); }

    // The messages of the log, without their dates.
    [[nodiscard]] std::vector<std::string> messages() const {
        std::vector<std::string> lines;
        std::istringstream text(log());
        for (std::string line; std::getline(text, line);) {
            EXPECT_THAT(line, MatchesRegex(R"(\[....-..-.. ..:..:..\] .*)"));
            lines.push_back(line.substr(std::string("[yyyy-MM-dd HH:mm:ss] ").size()));
        }
        return lines;
    }

    // The messages after the five lines of the header.
    [[nodiscard]] std::vector<std::string> messagesAfterHeader() const {
        const auto all = messages();
        EXPECT_GE(all.size(), 5U);
        return {all.begin() + std::min<std::ptrdiff_t>(5, std::ssize(all)), all.end()};
    }

    void expectExceptionThenAbort(const std::string& ending, const std::string& first,
                                  bool hasStack = true) const {
        EXPECT_EQ(session(ending), SIGABRT) << ending;
        const auto lines = messagesAfterHeader();
        ASSERT_GE(lines.size(), 2U) << ending << "\n" << log();
        EXPECT_EQ(lines.front(), crashFrom + first) << ending;
        EXPECT_EQ(lines.back(), std::string(crashFrom) + "SIGABRT") << ending;
        EXPECT_LE(lines.size(), 12U) << ending << "\n" << log();
        EXPECT_TRUE(!hasStack || lines.size() > 2) << ending << "\n" << log();
        for (std::size_t i = 1; i + 1 < lines.size(); ++i) {
            EXPECT_THAT(lines[i], StartsWith("  ")) << ending;
        }
        EXPECT_TRUE(isThere(marker)) << ending;
    }

    TemporaryFolder home;
    const std::string folder = home.path("Library/Logs/kovraUninstaller");
    const std::string logFile = folder + "/uninstall.log";
    const std::string marker = folder + "/.session_active";
};

TEST_F(Sessions, LeaveNoTraceOfANormalEnd) {
    EXPECT_EQ(session("normal"), 0);
    EXPECT_FALSE(isThere(marker));
    EXPECT_EQ(session("normal"), 0);
    EXPECT_THAT(log(), ::testing::Not(HasSubstr("Previous session")));
    EXPECT_THAT(messagesAfterHeader().front(), "Session ended normally");
}

TEST_F(Sessions, EndWithTheirLastLineThoughOtherThreadsLog) {
    for (int round = 0; round < 10; ++round) {
        EXPECT_EQ(session("while workers log"), 0);
        const std::string text = log();
        EXPECT_THAT(text, HasSubstr("  Worker: at it\n"));
        EXPECT_THAT(text, ::testing::EndsWith("] Session ended normally\n"));
        std::filesystem::remove(logFile);
    }
}

TEST_F(Sessions, MarkTheirStartWhileTheyRun) {
    EXPECT_EQ(session("killed"), SIGKILL);
    const std::string start = contentOf(marker);
    EXPECT_THAT(start, MatchesRegex("....-..-.. ..:..:.."));
    EXPECT_THAT(log(), HasSubstr("[" + start.substr(0, 16)));
}

TEST_F(Sessions, ReportAKilledSessionBeforeTheirOwnHeader) {
    EXPECT_EQ(session("killed"), SIGKILL);
    const std::string start = contentOf(marker);
    EXPECT_EQ(session("normal"), 0);
    const auto lines = messages();
    ASSERT_GT(lines.size(), 6U);
    EXPECT_EQ(lines.at(5), "⚠️ Previous session (started " + start + ") ended abnormally");
    EXPECT_THAT(lines.at(6), StartsWith("───"));
    EXPECT_FALSE(isThere(marker));
}

TEST_F(Sessions, QuoteAMarkerThatIsNotADateUnchanged) {
    home.file("Library/Logs/kovraUninstaller/.session_active", " not a date ");
    EXPECT_EQ(session("normal"), 0);
    EXPECT_EQ(messages().front(), "⚠️ Previous session (started  not a date ) ended abnormally");
}

TEST_F(Sessions, ReportAnUnreadableMarkerWithoutAStartTime) {
    home.file("Library/Logs/kovraUninstaller/.session_active", "\xFF\xFE");
    EXPECT_EQ(session("killed"), SIGKILL);
    EXPECT_EQ(messages().front(), "⚠️ Previous session ended abnormally");
    EXPECT_THAT(contentOf(marker), MatchesRegex("....-..-.. ..:..:.."));
}

TEST_F(Sessions, TreatATooLongMarkerAsUnreadable) {
    const std::string longest(65536, 'x');
    home.file("Library/Logs/kovraUninstaller/.session_active", longest);
    EXPECT_EQ(session("killed"), SIGKILL);
    EXPECT_EQ(messages().front(), "⚠️ Previous session (started " + longest + ") ended abnormally");
    std::filesystem::remove(logFile);
    home.file("Library/Logs/kovraUninstaller/.session_active", longest + "x");
    EXPECT_EQ(session("killed"), SIGKILL);
    EXPECT_EQ(messages().front(), "⚠️ Previous session ended abnormally");
    EXPECT_THAT(contentOf(marker), MatchesRegex("....-..-.. ..:..:.."));
}

// With a file size limit of 0 the first byte of the marker ends the program. The limit does not
// count for a device, to which the log goes here.
TEST_F(Sessions, LeaveNoMarkerWhenKilledWhileWritingItAndNoSecondTemporaryFile) {
    home.link("Library/Logs/kovraUninstaller/uninstall.log", "/dev/null");
    home.file("Library/Logs/kovraUninstaller/.session_active", "then");
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(shell("ulimit -f 0; exec " + program() + " normal"), SIGXFSZ);
        EXPECT_FALSE(isThere(marker)) << "the old one goes before the new one comes";
        EXPECT_EQ(namesInFolder().size(), 2U) << "the log, and one unfinished marker";
    }
    EXPECT_EQ(session("killed"), SIGKILL);
    EXPECT_THAT(namesInFolder(), UnorderedElementsAre("uninstall.log", ".session_active"));
}

// A file size limit ends the program at the last line of the header, and at the line after it.
TEST_F(Sessions, WriteTheMarkerRightAfterTheHeader) {
    EXPECT_EQ(session("killed"), SIGKILL);
    const std::string header = log();
    const std::size_t lastLine = header.rfind('\n', header.size() - 2) + 1;
    for (const std::size_t limit : {lastLine, header.size()}) {
        std::filesystem::remove(logFile);
        std::filesystem::remove(marker);
        EXPECT_EQ(
            shell("exec prlimit --fsize=" + std::to_string(limit) + " " + program() + " normal"),
            SIGXFSZ);
        EXPECT_EQ(log().size(), limit);
        if (limit == lastLine) {
            EXPECT_THAT(namesInFolder(), ElementsAre("uninstall.log"));
        } else {
            EXPECT_THAT(namesInFolder(), UnorderedElementsAre("uninstall.log", ".session_active"));
        }
    }
}

TEST_F(Sessions, ReplaceAMarkerThatIsAFolder) {
    home.file("Library/Logs/kovraUninstaller/.session_active/file");
    EXPECT_EQ(session("killed"), SIGKILL);
    EXPECT_EQ(messages().front(), "⚠️ Previous session ended abnormally");
    EXPECT_THAT(contentOf(marker), MatchesRegex("....-..-.. ..:..:.."));
}

TEST_F(Sessions, NameRecentCrashReportsBeforeTheHeader) {
    home.file("Library/Logs/DiagnosticReports/KOVRAuninstaller-2026-01-02-030405.ips");
    home.file("Library/Logs/DiagnosticReports/kovraInput-2026-01-02-030405.ips");
    home.file("Library/Logs/kovraUninstaller/.session_active", "then");
    EXPECT_EQ(session("normal"), 0);
    const auto lines = messages();
    EXPECT_EQ(lines.at(0), "⚠️ Previous session (started then) ended abnormally");
    EXPECT_THAT(
        lines.at(1),
        MatchesRegex("⚠️ System crash report found: KOVRAuninstaller-2026-01-02-030405\\.ips "
                     "\\(created ....-..-.. ..:..:..\\)"));
    EXPECT_THAT(lines.at(2), StartsWith("───"));
}

TEST_F(Sessions, DateCrashReportsByTheirCreation) {
    const std::string report =
        home.file("Library/Logs/DiagnosticReports/kovraUninstaller-2026-01-02-030405.ips");
    std::filesystem::last_write_time(report, std::filesystem::file_time_type::clock::now() -
                                                 std::chrono::hours(72));
    EXPECT_EQ(session("normal"), 0);
    const std::string made = printed("date -d @$(stat -c %W '" + report + "') '+%F %T'");
    EXPECT_EQ(messages().front(), "⚠️ System crash report found: "
                                  "kovraUninstaller-2026-01-02-030405.ips (created " +
                                      made + ")");
}

TEST_F(Sessions, LogEachFatalSignalAndEndByIt) {
    const std::vector<std::pair<std::string, int>> faults{
        {"SIGSEGV", SIGSEGV}, {"SIGABRT", SIGABRT}, {"SIGBUS", SIGBUS},
        {"SIGFPE", SIGFPE},   {"SIGILL", SIGILL},   {"SIGTRAP", SIGTRAP},
    };
    for (const auto& [name, signal] : faults) {
        EXPECT_EQ(session(name), signal) << name;
        EXPECT_EQ(messages().back(), crashFrom + name);
        EXPECT_TRUE(isThere(marker)) << name;
    }
}

TEST_F(Sessions, LogAFaultOnAnyThread) {
    EXPECT_EQ(session("fault on a thread"), SIGSEGV);
    EXPECT_EQ(messages().back(), std::string(crashFrom) + "SIGSEGV");
}

TEST_F(Sessions, LogAStackOverflow) {
    EXPECT_EQ(session("stack overflow"), SIGSEGV);
    EXPECT_EQ(messages().back(), std::string(crashFrom) + "SIGSEGV");
}

TEST_F(Sessions, EndAtOnceByASecondFaultDuringACrashLine) {
    const std::vector<std::pair<std::string, int>> faults{
        {"SIGSEGV in a line of SIGSEGV", SIGSEGV},
        {"raised SIGSEGV in a line of SIGSEGV", SIGSEGV},
        {"SIGABRT in a line of SIGSEGV", SIGABRT},
        {"SIGBUS in a line of SIGSEGV", SIGBUS},
        {"SIGFPE in a line of SIGSEGV", SIGFPE},
        {"SIGILL in a line of SIGSEGV", SIGILL},
        {"SIGTRAP in a line of SIGSEGV", SIGTRAP},
        {"error in a line of SIGSEGV", SIGABRT},
        {"SIGABRT in a line of SIGABRT", SIGABRT},
        {"SIGSEGV in a line of an error", SIGSEGV},
        {"SIGABRT in a line of an object", SIGABRT},
        {"error in a line of an error", SIGABRT},
    };
    for (const auto& [ending, signal] : faults) {
        EXPECT_EQ(session(ending), signal) << ending;
        EXPECT_THAT(messagesAfterHeader(), ElementsAre()) << ending;
        EXPECT_TRUE(isThere(marker)) << ending;
        std::filesystem::remove(marker);
        std::filesystem::remove(logFile);
    }
}

TEST_F(Sessions, LogAFaultInsideTheCLibrarysTimeFunctions) {
    EXPECT_EQ(session("fault inside localtime"), SIGSEGV);
    EXPECT_THAT(messagesAfterHeader(), ElementsAre(std::string(crashFrom) + "SIGSEGV"));
    std::filesystem::remove(marker);
    std::filesystem::remove(logFile);
    EXPECT_EQ(session("error inside localtime"), SIGABRT);
    EXPECT_EQ(messagesAfterHeader().front(),
              std::string(crashFrom) + "std::runtime_error — for the test");
    EXPECT_EQ(messagesAfterHeader().back(), std::string(crashFrom) + "SIGABRT");
}

TEST_F(Sessions, DateACrashInTheTimeZoneOfTheirStart) {
    const platform::testing::EnvironmentVariable zone("TZ", "Pacific/Chatham");
    const std::string before = printed("date '+%F %T'");
    EXPECT_EQ(session("fault in another zone"), SIGSEGV);
    const std::string after = printed("date '+%F %T'");
    const std::string crash = printed("tail -n 1 '" + logFile + "' | cut -c 2-20");
    EXPECT_LE(before, crash);
    EXPECT_GE(after, crash);
}

class Exceptions : public Sessions, public ::testing::WithParamInterface<const char*> {};

TEST_P(Exceptions, OfTheFrameworksAreLoggedWithTheirStackBeforeTheAbort) {
    expectExceptionThenAbort(std::string("object ") + GetParam(), "TestException — for the test");
}

TEST_P(Exceptions, OfCppAreLoggedWithTheirStackBeforeTheAbort) {
    expectExceptionThenAbort(std::string("error ") + GetParam(),
                             "std::runtime_error — for the test");
}

INSTANTIATE_TEST_SUITE_P(Everywhere, Exceptions,
                         ::testing::Values("in a callback", "on the main queue",
                                           "in the background", "in a task on main",
                                           "in a background task", "on a plain thread",
                                           "on the main thread"));

TEST_F(Sessions, LogAnExceptionOnASerialQueue) {
    expectExceptionThenAbort("object on a serial queue", "TestException — for the test");
}

TEST_F(Sessions, LogAnExceptionWithoutAReasonAsUnknown) {
    expectExceptionThenAbort("number in a callback", "int — unknown");
}

TEST_F(Sessions, LogTheSignalAloneWhenTheProgramEndsItselfWithoutAnException) {
    EXPECT_EQ(session("terminated"), SIGABRT);
    EXPECT_THAT(messagesAfterHeader(), ElementsAre(std::string(crashFrom) + "SIGABRT"));
}

TEST_F(Sessions, LogACrashAfterTheirLastLine) {
    EXPECT_EQ(session("fault after the last line"), SIGSEGV);
    EXPECT_THAT(messagesAfterHeader(),
                ElementsAre("Session ended normally", std::string(crashFrom) + "SIGSEGV"));
    EXPECT_FALSE(isThere(marker));
    std::filesystem::remove(logFile);
    EXPECT_EQ(session("error after the last line"), SIGABRT);
    const auto lines = messagesAfterHeader();
    ASSERT_GT(lines.size(), 3U) << log();
    EXPECT_EQ(lines.at(0), "Session ended normally");
    EXPECT_EQ(lines.at(1), std::string(crashFrom) + "std::runtime_error — for the test");
    EXPECT_THAT(lines.at(2), StartsWith("  "));
    EXPECT_EQ(lines.back(), std::string(crashFrom) + "SIGABRT");
}

TEST_F(Sessions, ReportACrashInTheNextSession) {
    EXPECT_EQ(session("object in a callback"), SIGABRT);
    const std::string start = contentOf(marker);
    const auto before = messages().size();
    EXPECT_EQ(session("normal"), 0);
    EXPECT_EQ(messages().at(before), "⚠️ Previous session (started " + start + ") ended abnormally");
}

platform::UncaughtException exceptionWithCalls(int calls) {
    platform::UncaughtException exception{"Name", "reason", {}};
    for (int call = 0; call < calls; ++call) {
        exception.callStackSymbols.push_back("call " + std::to_string(call));
    }
    return exception;
}

TEST(CrashLines, ShowTheFirstTenCallsAtMost) {
    EXPECT_EQ(crashLines(exceptionWithCalls(25)).size(), 11U);
    EXPECT_EQ(crashLines(exceptionWithCalls(25)).back(), "  call 9");
    EXPECT_THAT(crashLines(exceptionWithCalls(3)),
                ElementsAre("‼️ CRASH: Name — reason", "  call 0", "  call 1", "  call 2"));
    EXPECT_THAT(crashLines(exceptionWithCalls(0)), ElementsAre("‼️ CRASH: Name — reason"));
}

TEST(CrashLines, CallAMissingReasonUnknown) {
    EXPECT_THAT(crashLines({"Name", std::nullopt, {}}), ElementsAre("‼️ CRASH: Name — unknown"));
    EXPECT_THAT(crashLines({"Name", "", {}}), ElementsAre("‼️ CRASH: Name — "));
}

TEST(CrashLines, AreValidUtf8WhateverTheReasonHolds) {
    EXPECT_THAT(crashLines({"Name", "\xFF", {"\xFE"}}),
                ElementsAre("‼️ CRASH: Name — \uFFFD", "  \uFFFD"));
}

TEST(SignalName, IsTheConstantsOrTheNumber) {
    EXPECT_EQ(signalName(SIGSEGV).text(), "SIGSEGV");
    EXPECT_EQ(signalName(SIGTRAP).text(), "SIGTRAP");
    EXPECT_EQ(signalName(30).text(), "SIG30");
    EXPECT_EQ(signalName(2147483647).text(), "SIG2147483647");
}

TEST(CrashSignalLine, IsAWholeLineOfTheLog) {
    const platform::testing::EnvironmentVariable variable("TZ", "UTC");
    const std::time_t moment = 1741944413;
    const LocalZone zone(moment);
    EXPECT_EQ(crashSignalLine(SIGBUS, moment, zone).text(),
              "[2025-03-14 09:26:53] ‼️ CRASH: SIGBUS\n");
}

TEST(CrashReport, IsOursByTheExecutablesNameInAnyCase) {
    EXPECT_TRUE(isNameOfOurCrashReport("kovraUninstaller-2026-01-02-030405.ips"));
    EXPECT_TRUE(isNameOfOurCrashReport("KOVRAUNINSTALLER_2026-01-02-030405_Mac.crash"));
    EXPECT_TRUE(isNameOfOurCrashReport(".hidden kovrauninstaller \xFF"));
    EXPECT_FALSE(isNameOfOurCrashReport("kovra-2026-01-02-030405.ips"));
    EXPECT_FALSE(isNameOfOurCrashReport("kovra Uninstaller.ips"));
}

TEST(CrashReport, IsRecentForLessThanADay) {
    using namespace std::chrono_literals;
    const platform::FileTime now = std::chrono::sys_days(std::chrono::year(2026) / 3 / 14) + 9h;
    EXPECT_FALSE(isRecentCrashReport(now - 86400s, now));
    EXPECT_FALSE(isRecentCrashReport(now - 86401s, now));
    EXPECT_TRUE(isRecentCrashReport(now - 86400s + 1ns, now));
    EXPECT_TRUE(isRecentCrashReport(now - 86399s, now));
    EXPECT_TRUE(isRecentCrashReport(now, now));
    EXPECT_TRUE(isRecentCrashReport(now + 1s, now));
}

} // namespace
} // namespace kovra
