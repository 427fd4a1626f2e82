#include "kovraUninstaller/engine/PrivilegedRunner.hpp"
#include "kovraUninstaller/system/Shell.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <random>

namespace kovra {
namespace {

// What a real shell reads.
std::string wordSeenByShell(const std::string& text) {
    return std::string(Shell::run("/bin/sh", {"-c", "printf %s " + quotedForShell(text)}).data);
}

// What an AppleScript compiler reads between the quotes. An unescaped quote would end the string.
std::string stringSeenByAppleScript(const std::string& escaped) {
    std::string read;
    for (std::size_t i = 0; i < escaped.size(); ++i) {
        EXPECT_NE(escaped[i], '"');
        if (escaped[i] == '\\') {
            ++i;
            EXPECT_TRUE(i < escaped.size() && (escaped[i] == '\\' || escaped[i] == '"'));
        }
        read += escaped[i];
    }
    return read;
}

const std::vector<std::string> hostileTexts{
    "",
    "plain",
    "/private/tmp/x/uninstall.sh",
    "/tmp/it's/uninstall.sh",
    "'",
    "''",
    "'\\''",
    "\"",
    "\\",
    "\\\"",
    "\\'",
    "a\\",
    "$(touch /tmp/kovra-quoting-broken)",
    "`touch /tmp/kovra-quoting-broken`",
    "; touch /tmp/kovra-quoting-broken #",
    "$HOME ~ * ? [a] {b,c} & | < > ( ) !",
    "two\nlines\tand tab",
    "-n",
    "caf\u00E9 \U0001F389",
    "\x80\xFF",
};

TEST(QuotedForShell, ReplacesEachSingleQuoteByFourCharacters) {
    EXPECT_EQ(quotedForShell("/tmp/it's/uninstall.sh"), R"('/tmp/it'\''s/uninstall.sh')");
    EXPECT_EQ(quotedForShell(""), "''");
}

TEST(QuotedForShell, IsOneWordToARealShellWhateverIsInIt) {
    for (const std::string& text : hostileTexts) {
        EXPECT_EQ(wordSeenByShell(text), text);
    }
}

TEST(EscapedForAppleScript, EscapesBackslashesAndDoubleQuotesOnce) {
    EXPECT_EQ(escapedForAppleScript(R"(a\b"c)"), R"(a\\b\"c)");
    EXPECT_EQ(escapedForAppleScript(R"(\")"), R"(\\\")");
    EXPECT_EQ(escapedForAppleScript("it's"), "it's");
}

TEST(EscapedForAppleScript, ReadsBackAsTheSameText) {
    for (const std::string& text : hostileTexts) {
        EXPECT_EQ(stringSeenByAppleScript(escapedForAppleScript(text)), text);
    }
    std::mt19937 random(20240607);
    std::uniform_int_distribution<std::size_t> pick(0, 5);
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        for (int i = 0; i < 12; ++i) {
            text += "\\\"'ab "[pick(random)];
        }
        EXPECT_EQ(stringSeenByAppleScript(escapedForAppleScript(text)), text);
    }
}

TEST(AdministratorScriptSource, IsTheWholeCommandForAPlainPath) {
    EXPECT_EQ(administratorScriptSource("/private/tmp/x/uninstall.sh"),
              "do shell script \"/bin/bash '/private/tmp/x/uninstall.sh'\" with administrator "
              "privileges");
}

TEST(AdministratorScriptSource, RunsTheRightFileWhateverItsPath) {
    const platform::testing::TemporaryFolder temporary;
    for (const std::string folder : {"it's", "two words", "a\"b", "back\\slash", "$(false)", "'"}) {
        const std::string script = temporary.file(folder + "/uninstall.sh", "printf '%s' \"$0\"");
        const std::string source = administratorScriptSource(script);
        constexpr std::string_view opening = "do shell script \"";
        constexpr std::string_view closing = "\" with administrator privileges";
        ASSERT_TRUE(source.starts_with(opening) && source.ends_with(closing));
        const std::string command = stringSeenByAppleScript(
            source.substr(opening.size(), source.size() - opening.size() - closing.size()));
        EXPECT_EQ(Shell::run("/bin/sh", {"-c", command}).data, script);
    }
}

using Kind = EngineError::Kind;

EngineError::Kind kindFor(std::optional<std::string> message, std::optional<std::int64_t> number) {
    return engineErrorFor({std::move(message), number}).kind();
}

TEST(AdministratorError, IsACancellationByItsNumberInAnyLanguage) {
    EXPECT_EQ(kindFor("User canceled.", -128), Kind::adminCancelled);
    EXPECT_EQ(kindFor("Abgebrochen.", -128), Kind::adminCancelled);
    EXPECT_EQ(kindFor(std::nullopt, -128), Kind::adminCancelled);
}

TEST(AdministratorError, IsACancellationByItsTextWhenTheNumberIsMissingOrAnother) {
    EXPECT_EQ(kindFor("User canceled.", std::nullopt), Kind::adminCancelled);
    EXPECT_EQ(kindFor("The operation was CANCELLED.", -60006), Kind::adminCancelled);
}

TEST(AdministratorError, SearchesTheTextByTheLocalesRules) {
    EXPECT_EQ(kindFor("Đã hủy — CanCel — 取消", 1), Kind::adminCancelled);
    EXPECT_EQ(kindFor("cance l, can cel", 1), Kind::failed);
    // Invalid UTF-8 contains no text.
    EXPECT_EQ(kindFor("\xff cancelled", 1), Kind::failed);
}

TEST(AdministratorError, IsAFailureWithTheMessageOtherwise) {
    const EngineError error = engineErrorFor({"rm: it's busy", 1});
    EXPECT_EQ(error.kind(), Kind::failed);
    EXPECT_STREQ(error.what(), "Privileged removal failed: rm: it's busy");
    EXPECT_EQ(kindFor("message", 128), Kind::failed);
    EXPECT_EQ(kindFor("message", 4294967168), Kind::failed); // whose lower half is -128
}

TEST(AdministratorError, SaysUnknownErrorWithoutAMessage) {
    EXPECT_STREQ(engineErrorFor({}).what(), "Privileged removal failed: Unknown error");
}

} // namespace
} // namespace kovra
