#include "platform/services/AppleScript.hpp"

#include <gmock/gmock.h>

namespace platform {
namespace {

using Parts = std::pair<std::string, std::int64_t>;

Parts messageAndNumber(std::string_view text) {
    const AppleScriptError error = parseOsascriptError(text);
    EXPECT_TRUE(error.message && error.number) << text;
    return {error.message.value_or(""), error.number.value_or(0)};
}

TEST(OsascriptError, HasAMessageAndANumber) {
    EXPECT_EQ(messageAndNumber("0:29: execution error: User canceled. (-128)\n"),
              Parts("User canceled.", -128));
    EXPECT_EQ(messageAndNumber("execution error: rm: failed (1)"), Parts("rm: failed", 1));
    EXPECT_EQ(messageAndNumber("execution error:  (3)"), Parts("", 3));
}

TEST(OsascriptError, MayHaveBracketsAndLineBreaksInItsMessage) {
    EXPECT_EQ(messageAndNumber("x: execution error: a (1)\nb execution error: c (2) (-1700)\n"),
              Parts("a (1)\nb execution error: c (2)", -1700));
    EXPECT_EQ(messageAndNumber("execution error: a\r\nb\n\nc\r\n (7)\r\n"),
              Parts("a\r\nb\n\nc\r\n", 7));
}

TEST(OsascriptError, MayHaveOtherLinesAroundIt) {
    EXPECT_EQ(messageAndNumber("a warning (3)\n0:29: execution error: User canceled. (-128)\n"
                               "osascript[7] noise\n"),
              Parts("User canceled.", -128));
    EXPECT_EQ(messageAndNumber("execution error: x (1)\t \r\n\nnoise (\nmore) (a)\n()\n (-)\n( 2)"),
              Parts("x", 1));
    EXPECT_EQ(messageAndNumber("execution error: a\nb (-5)\nnoise"), Parts("a\nb", -5));
}

TEST(OsascriptError, HasOnlyAMessageWhenItsNumberIsOutOfRange) {
    EXPECT_EQ(messageAndNumber("execution error: x (99999999999)"), Parts("x", 99999999999));
    EXPECT_EQ(messageAndNumber("execution error: x (4294967168)"), Parts("x", 4294967168));
    for (const std::string_view text :
         {"execution error: x (9223372036854775808)", "execution error: x (-9223372036854775809)",
          "execution error: x (99999999999999999999999999999999)"}) {
        const AppleScriptError error = parseOsascriptError(text);
        EXPECT_THAT(error.message, ::testing::Optional(std::string("x"))) << text;
        EXPECT_FALSE(error.number) << text;
    }
}

TEST(OsascriptError, IsFoundInALongText) {
    std::string text = "execution error: x (1)\n";
    for (int i = 0; i < 1'000'000; ++i) {
        text += "noise)\n";
    }
    EXPECT_EQ(messageAndNumber(text), Parts("x", 1));
}

TEST(OsascriptError, HasNeitherInAnyOtherForm) {
    for (const std::string_view text :
         {"", "killed", "execution error: no number", "execution error: x (1) more",
          "execution error: x (one)", "execution error: x ()", "execution error: x (-)",
          "execution error: x (+1)", "execution error: x (1.5)", "execution error: x(1)",
          "syntax error: x (-2741)", "x (1)\nexecution error: "}) {
        const AppleScriptError error = parseOsascriptError(text);
        EXPECT_FALSE(error.message || error.number) << text;
    }
}

TEST(OsascriptError, RepairsIllFormedUtf8) {
    EXPECT_EQ(messageAndNumber("execution error: a\xFF"
                               "b (1)"),
              Parts("a\uFFFD"
                    "b",
                    1));
}

} // namespace
} // namespace platform
