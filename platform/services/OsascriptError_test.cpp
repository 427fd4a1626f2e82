#include "platform/services/OsascriptError.hpp"

#include <gmock/gmock.h>

namespace platform {
namespace {

std::pair<std::string, int> messageAndNumber(std::string_view text) {
    const AppleScriptError error = parseOsascriptError(text);
    EXPECT_TRUE(error.message && error.number) << text;
    return {error.message.value_or(""), error.number.value_or(0)};
}

using Parts = std::pair<std::string, int>;

TEST(OsascriptError, HasAMessageAndANumber) {
    EXPECT_EQ(messageAndNumber("0:29: execution error: User canceled. (-128)\n"),
              Parts("User canceled.", -128));
    EXPECT_EQ(messageAndNumber("execution error: rm: failed (1)"), Parts("rm: failed", 1));
    EXPECT_EQ(messageAndNumber("execution error:  (3)"), Parts("", 3));
}

TEST(OsascriptError, MayHaveBracketsAndLineBreaksInItsMessage) {
    EXPECT_EQ(messageAndNumber("x: execution error: a (1)\nb execution error: c (2) (-1700)\n"),
              Parts("a (1)\nb execution error: c (2)", -1700));
}

TEST(OsascriptError, IsUnknownInAnyOtherForm) {
    for (const std::string_view text :
         {"", "killed", "execution error: no number", "execution error: x (1) more",
          "execution error: x (one)", "execution error: x ()", "syntax error: x (-2741)",
          "x (1) execution error: ", "execution error: x (99999999999)"}) {
        const AppleScriptError error = parseOsascriptError(text);
        EXPECT_FALSE(error.message || error.number) << text;
    }
}

TEST(OsascriptError, GivesTextWhateverTheBytes) {
    EXPECT_EQ(messageAndNumber("execution error: a\xFF"
                               "b (1)"),
              Parts("a\uFFFD"
                    "b",
                    1));
}

} // namespace
} // namespace platform
