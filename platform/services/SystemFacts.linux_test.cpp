#include "platform/services/SystemFacts.hpp"

#include "platform/services/PropertyListSerialization.hpp"
#include "platform/testing/PrivateMounts.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/utsname.h>

namespace platform {
namespace {

using namespace std::string_literals;

TEST(TextUpToNul, IsWhatStandsBeforeTheFirstNul) {
    EXPECT_EQ(textUpToNul("23F79\0"s), "23F79");
    EXPECT_EQ(textUpToNul("Mac14,2\0rubbish\0"s), "Mac14,2");
    EXPECT_EQ(textUpToNul("\0"s), "");
}

TEST(TextUpToNul, RepairsIllFormedUtf8) {
    EXPECT_EQ(textUpToNul("a\xFF\xC3z\0"s), "a\uFFFD\uFFFDz");
}

TEST(TextUpToNulDeathTest, AbortsWithoutANul) {
    EXPECT_EXIT(static_cast<void>(textUpToNul({})), ::testing::KilledBySignal(SIGABRT), "no end");
    EXPECT_EXIT(static_cast<void>(textUpToNul(std::span("23F79", 5))),
                ::testing::KilledBySignal(SIGABRT), "no end");
}

struct SystemDescription : ::testing::Test {
    void SetUp() override { testing::PrivateMounts::overlay("/var"); }

    static void describe(const std::string& content) {
        std::filesystem::create_directories("/var/db/practice-mac");
        std::ofstream("/var/db/practice-mac/system.plist") << content;
    }

    static void expectVersion(long major, long minor, long patch) {
        const auto version = operatingSystemVersion();
        EXPECT_EQ(version.major, major);
        EXPECT_EQ(version.minor, minor);
        EXPECT_EQ(version.patch, patch);
    }
};

TEST_F(SystemDescription, IsThePracticeMacsInside) {
    describe(serializeXmlPropertyList(PropertyListValue::Dictionary{{"kern.osversion", "23F79"},
                                                                    {"hw.model", "Mac14,2"},
                                                                    {"ProductVersion", "14.5"}})
                 .value());
    EXPECT_EQ(systemControlString("kern.osversion"), "23F79");
    EXPECT_EQ(systemControlString("hw.model"), "Mac14,2");
    expectVersion(14, 5, 0);
}

TEST_F(SystemDescription, FallsBackToLinuxsOwn) {
    utsname linuxItself{};
    ::uname(&linuxItself);
    for (const char* content : {"", "rubbish", "<plist><array/></plist>",
                                "<plist><dict><key>hw.model</key><true/></dict></plist>"}) {
        describe(content);
        EXPECT_EQ(systemControlString("hw.model"), linuxItself.machine);
        EXPECT_EQ(systemControlString("kern.osversion"), linuxItself.release);
        EXPECT_GT(operatingSystemVersion().major, 0);
    }
}

} // namespace
} // namespace platform
