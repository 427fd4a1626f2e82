#include "kovraUninstaller/logging/LogLine.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/testing/Environment.hpp"
#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <array>

namespace kovra {
namespace {

using platform::testing::contentOf;
using platform::testing::EnvironmentVariable;
using platform::testing::holdsInForkedProcess;
using platform::testing::isThere;
using ::testing::MatchesRegex;

// A process opens its log once, in its home folder at that time, so each test logs from a forked
// process.
class UninstallerLogTest : public ::testing::Test {
  protected:
    template <class Session>
    void expectEnds(Session session) const {
        EXPECT_TRUE(holdsInForkedProcess([&] {
            session();
            return true;
        }));
    }

    platform::testing::TemporaryFolder tree;
    const std::string folder = tree.path("Library/Logs/kovraUninstaller");
    const std::string log = folder + "/uninstall.log";
    const EnvironmentVariable home{"HOME", tree.path().c_str()};
};

TEST_F(UninstallerLogTest, ALineIsTheTimeTheMessageAndALineFeed) {
    expectEnds([] {
        UninstallerLog::file("Uninstall started");
        UninstallerLog::file("");
    });
    const std::string stamp = "\\[[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\] ";
    EXPECT_THAT(contentOf(log), MatchesRegex(stamp + "Uninstall started\n" + stamp + "\n"));
}

TEST_F(UninstallerLogTest, AMessageIsWrittenUnchanged) {
    const std::string message = "two\nlines — OK \t\"quoted\" 🎉 " + std::string(100'000, 'x');
    expectEnds([&] { UninstallerLog::file(message); });
    EXPECT_EQ(contentOf(log).substr(std::string("[2025-03-14 09:26:53] ").size()), message + "\n");
}

TEST_F(UninstallerLogTest, AMessageThatIsNotUtf8IsDropped) {
    expectEnds([] {
        UninstallerLog::file("bad \xFF");
        UninstallerLog::file("good");
    });
    EXPECT_EQ(contentOf(log).size(), std::string("[2025-03-14 09:26:53] good\n").size());
}

TEST_F(UninstallerLogTest, NamesItsFilesInTheHomeFolder) {
    EXPECT_TRUE(holdsInForkedProcess([&] {
        return UninstallerLog::logDir() == folder && UninstallerLog::logFile() == log &&
               UninstallerLog::sessionMarkerFile() == folder + "/.session_active";
    }));
}

TEST_F(UninstallerLogTest, AskingForThePathsCreatesNoFile) {
    expectEnds([] { static_cast<void>(UninstallerLog::logFile()); });
    EXPECT_FALSE(isThere(tree.path("Library")));
}

TEST_F(UninstallerLogTest, AnErrorGoesToTheSystemsLogAlone) {
    expectEnds([] {
        UninstallerLog::error("tistool staging failed: %{public}@", {"100% %s %n"});
        UninstallerLog::error("tistool binary not found in bundle");
        UninstallerLog::error("too few: %{public}@ %{public}@", {"one"});
    });
    EXPECT_FALSE(isThere(log));
}

TEST_F(UninstallerLogTest, LosesTheLinesWhenTheHomeFolderIsMissingOrAFile) {
    tree.file("file");
    for (const std::string& place : {std::string("/proc/nobody"), tree.path("file")}) {
        home.set(place.c_str());
        expectEnds([] { UninstallerLog::file("lost"); });
    }
    EXPECT_EQ(contentOf(tree.path("file")), "content");
}

TEST_F(UninstallerLogTest, TheSystemVersionHasThreeNumbersAndMissingVersionsAreQuestionMarks) {
    EXPECT_THAT(UninstallerLog::macOSVersion(), MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
    EXPECT_NE(UninstallerLog::macOSBuild(), "");
    EXPECT_EQ(UninstallerLog::appVersion(), "?");
    EXPECT_EQ(UninstallerLog::appBuild(), "?");
}

std::string dateInZone(std::time_t moment, const LocalZone& zone) {
    return std::string(logDate(moment, zone.offsetAt(moment)).text());
}

std::string dateByCLibrary(std::time_t moment) {
    std::tm local{};
    ::localtime_r(&moment, &local);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local)};
}

TEST(LogDate, IsLocalTimeInTheZoneOfTheProcesssStart) {
    const std::time_t moment = 1741944413; // 2025-03-14 09:26:53 UTC
    for (const auto& [zone, text] :
         {std::pair("UTC", "2025-03-14 09:26:53"), std::pair("Asia/Kolkata", "2025-03-14 14:56:53"),
          std::pair("America/Los_Angeles", "2025-03-14 02:26:53")}) {
        const EnvironmentVariable variable("TZ", zone);
        EXPECT_TRUE(holdsInForkedProcess([&, text = text] {
            return UninstallerLog::dateFormatter(moment) == text;
        })) << zone;
    }
}

// Zones without and with summer time: in both hemispheres, by half an hour, at midnight, suspended
// for a month, and by a rule that is in no zone file.
constexpr const char* zones[] = {"UTC",
                                 "Asia/Kolkata",
                                 "Europe/Berlin",
                                 "America/New_York",
                                 "America/St_Johns",
                                 "Pacific/Chatham",
                                 "Australia/Lord_Howe",
                                 "America/Santiago",
                                 "Africa/Casablanca",
                                 "Africa/Cairo",
                                 "Antarctica/Troll",
                                 "Pacific/Apia",
                                 "EST5EDT,M3.2.0,M11.1.0",
                                 "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0"};

TEST(LogDate, AgreesWithTheCLibraryInEveryZone) {
    constexpr std::time_t hour = 3600;
    constexpr std::time_t day = 24 * hour;
    for (const char* name : zones) {
        const EnvironmentVariable variable("TZ", name);
        EXPECT_TRUE(holdsInForkedProcess([] {
            for (const std::time_t start : {1735689600L, 1741944413L, 1774742399L}) {
                const LocalZone zone(start);
                for (std::time_t moment = start - day; moment < start + 399 * day;
                     moment += hour / 2) {
                    for (const std::time_t near : {moment - moment % hour - 1, moment}) {
                        if (dateInZone(near, zone) != dateByCLibrary(near)) {
                            std::fprintf(stderr, "%ld\n", near);
                            return false;
                        }
                    }
                }
            }
            return true;
        })) << name;
    }
}

TEST(LogDate, UsesTheNearestOffsetOutsideTheRangeRead) {
    const EnvironmentVariable variable("TZ", "EST5EDT,M3.2.0,M11.1.0");
    EXPECT_TRUE(holdsInForkedProcess([] {
        const std::time_t january = 1735689600; // 2025-01-01 00:00:00 UTC
        const LocalZone zone(january);
        return zone.offsetAt(0) == -18000 && zone.offsetAt(january) == -18000 &&
               zone.offsetAt(january + 180L * 86400) == -14400 &&
               zone.offsetAt(january + 3650L * 86400) == -18000 &&
               dateInZone(std::time_t{1} << 36, zone) == "4147-08-20 02:32:16";
    }));
}

TEST(LogDate, HasTwoDigitsInEachPlaceInEveryLocale) {
    const EnvironmentVariable variable("TZ", "UTC");
    EXPECT_TRUE(holdsInForkedProcess([] {
        return UninstallerLog::dateFormatter(0) == "1970-01-01 00:00:00" &&
               UninstallerLog::dateFormatter(1078012799) == "2004-02-28 23:59:59" &&
               UninstallerLog::dateFormatter(1078012800) == "2004-02-29 00:00:00";
    }));
}

TEST(FixedText, CutsWhatGoesBeyondItsCapacity) {
    FixedText<4> text;
    text.append("abc");
    EXPECT_EQ(text.text(), "abc");
    text.append("de");
    text.append("f");
    EXPECT_EQ(text.text(), "abcd");
}

TEST(LogLine, IsTheStartInTheProcesssZoneTheMessageAndALineFeed) {
    const EnvironmentVariable variable("TZ", "Asia/Kolkata");
    EXPECT_TRUE(holdsInForkedProcess([] {
        const std::time_t before = std::time(nullptr);
        const std::string line = logLine("a message");
        const std::time_t after = std::time(nullptr);
        const auto lineOf = [](std::time_t moment) {
            return "[" + dateByCLibrary(moment) + "] a message\n";
        };
        return lineOf(before) <= line && line <= lineOf(after);
    }));
}

} // namespace
} // namespace kovra
