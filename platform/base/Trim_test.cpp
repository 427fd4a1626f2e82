#include "platform/base/Trim.hpp"

#include <gmock/gmock.h>

namespace platform {
namespace {

TEST(Trimmed, TakesWhiteSpaceAndLineEndsFromBothEndsOnly) {
    EXPECT_EQ(trimmed(" \t\r\n com.kovra agent \v\f\n"), "com.kovra agent");
    EXPECT_EQ(trimmed("text"), "text");
    EXPECT_EQ(trimmed(" \n \t"), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Trimmed, KnowsTheWhiteSpaceBeyondAscii) {
    EXPECT_EQ(trimmed("\u00A0\u2003text\u3000\u2028\u0085"), "text");
}

TEST(Trimmed, LeavesCharactersThatMerelyShareBytesWithWhiteSpace) {
    EXPECT_EQ(trimmed("\u00C5text\u00E0"), "\u00C5text\u00E0");
    EXPECT_EQ(trimmed("\u200B"), "\u200B");
}

TEST(TrimmedOfBlanks, LeavesLineEndsAlone) {
    EXPECT_EQ(trimmedOfBlanks(" \t path: x\r \t"), "path: x\r");
    EXPECT_EQ(trimmedOfBlanks("\n x "), "\n x");
}

} // namespace
} // namespace platform
