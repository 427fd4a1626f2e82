#include "platform/base/Utf8.hpp"
#include "platform/testing/Python.hpp"

#include <gmock/gmock.h>

#include <random>
#include <string>
#include <vector>

namespace platform {
namespace {

using namespace std::string_literals;

std::string encoded(std::uint32_t c) {
    const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
    if (c < 0x80) {
        return {byte(c)};
    }
    if (c < 0x800) {
        return {byte(0xC0 | c >> 6U), byte(0x80 | (c & 0x3FU))};
    }
    if (c < 0x10000) {
        return {byte(0xE0 | c >> 12U), byte(0x80 | (c >> 6U & 0x3FU)), byte(0x80 | (c & 0x3FU))};
    }
    return {byte(0xF0 | c >> 18U), byte(0x80 | (c >> 12U & 0x3FU)), byte(0x80 | (c >> 6U & 0x3FU)),
            byte(0x80 | (c & 0x3FU))};
}

TEST(Utf8, EveryCharacterIsValidAndUnchangedAndSurrogatesAreInvalid) {
    for (std::uint32_t c = 0; c <= 0x10FFFF; ++c) {
        const bool surrogate = c >= 0xD800 && c <= 0xDFFF;
        ASSERT_EQ(isValidUtf8(encoded(c)), !surrogate) << c;
        ASSERT_EQ(repairedUtf8(encoded(c)) == encoded(c), !surrogate) << c;
    }
}

TEST(Utf8, IsTheSameTextInUtf16) {
    EXPECT_EQ(toUtf16(""), u"");
    EXPECT_EQ(toUtf16("a\0é€"s), u"a\0é€"s);
    EXPECT_EQ(toUtf16("\U00010000 🎉 \U0010FFFF \uFFFF\uFEFF"),
              u"\U00010000 🎉 \U0010FFFF \uFFFF\uFEFF");
}

TEST(Utf8, EmptyTextIsValid) {
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_EQ(repairedUtf8(""), "");
}

TEST(Utf8, OverlongFormsAndCodePointsAboveTheLastAreInvalid) {
    for (const char* bytes : {"\xC0\xAF", "\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF",
                              "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFE", "\xFF", "\x80"}) {
        EXPECT_FALSE(isValidUtf8(bytes)) << ::testing::PrintToString(bytes);
    }
}

TEST(Utf8, ATruncatedCharacterIsInvalidAndBecomesOneReplacement) {
    for (const std::string& whole : {encoded(0xE9), encoded(0x20AC), encoded(0x1F389)}) {
        for (std::size_t length = 1; length < whole.size(); ++length) {
            const std::string cut = whole.substr(0, length);
            EXPECT_FALSE(isValidUtf8("text " + cut));
            EXPECT_EQ(repairedUtf8("text " + cut + " text"), "text \xEF\xBF\xBD text");
        }
    }
}

TEST(Utf8, OneWrongByteIsFoundWhereverItStands) {
    for (std::size_t length = 1; length < 40; ++length) {
        for (std::size_t at = 0; at < length; ++at) {
            std::string bytes(length, 'a');
            bytes[at] = '\xFF';
            EXPECT_FALSE(isValidUtf8(bytes)) << at << " of " << length;
        }
    }
}

TEST(Utf8, NulBytesAreOrdinaryCharacters) {
    EXPECT_TRUE(isValidUtf8("a\0b"s));
    EXPECT_EQ(repairedUtf8("a\0\xFF"s), "a\0\xEF\xBF\xBD"s);
}

// Random bytes, mostly lead and continuation bytes, so that nearly well-formed text is common.
std::string rubbish(std::size_t size) {
    constexpr std::string_view frequent = "\x41\x80\x8F\x90\x9F\xA0\xBF\xC2\xE0\xE1\xED\xF0\xF4";
    std::mt19937 random(20250314);
    std::string bytes(size, '\0');
    for (char& byte : bytes) {
        byte = random() % 8 == 0 ? static_cast<char>(random()) : frequent[random() % 13];
    }
    return bytes;
}

TEST(Utf8, RubbishIsRepairedAsAnotherDecoderRepairsIt) {
    const std::string bytes = rubbish(200000);
    const std::string repaired = repairedUtf8(bytes);
    EXPECT_FALSE(isValidUtf8(bytes));
    EXPECT_TRUE(isValidUtf8(repaired));
    EXPECT_EQ(repaired,
              testing::python("import sys\n"
                              "text = sys.stdin.buffer.read().decode('utf-8', 'replace')\n"
                              "sys.stdout.buffer.write(text.encode())\n",
                              bytes));
}

TEST(Trimmed, RemovesWhiteSpaceAndLineEndsAtBothEndsOnly) {
    EXPECT_EQ(trimmed(" \t\r\n com.kovra agent \v\f\n"), "com.kovra agent");
    EXPECT_EQ(trimmed("text"), "text");
    EXPECT_EQ(trimmed(" \n \t"), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Trimmed, RemovesUnicodeWhiteSpace) {
    EXPECT_EQ(trimmed("\u00A0\u2003text\u3000\u2028\u0085"), "text");
}

TEST(Trimmed, KeepsCharactersThatShareBytesWithWhiteSpace) {
    EXPECT_EQ(trimmed("\u00C5text\u00E0"), "\u00C5text\u00E0");
    EXPECT_EQ(trimmed("\u200B"), "\u200B");
}

TEST(TrimmedSpacesAndTabs, KeepsLineEnds) {
    EXPECT_EQ(trimmedSpacesAndTabs(" \t path: x\r \t"), "path: x\r");
    EXPECT_EQ(trimmedSpacesAndTabs("\n x "), "\n x");
}

using namespace std::string_view_literals;

// Every text of up to seven characters out of three, every piece of up to four, from every
// position.
TEST(FindText, AgreesWithTheStandardLibrary) {
    const auto words = [](int longest) {
        std::vector<std::string> made{""};
        for (std::size_t at = 0; made[at].size() < static_cast<std::size_t>(longest); ++at) {
            for (const char c : "ab\0"sv) {
                made.push_back(made[at] + c);
            }
        }
        return made;
    };
    const auto pieces = words(4);
    for (const std::string& text : words(7)) {
        for (const std::string& piece : pieces) {
            for (std::size_t from = 0; from <= text.size() + 1; ++from) {
                ASSERT_EQ(findText(text, piece, from), std::string_view(text).find(piece, from));
            }
        }
    }
}

TEST(FindText, DoesNotReadBeyondTheText) {
    const std::string whole = "some kovra";
    EXPECT_EQ(findText(std::string_view(whole).substr(0, 9), "kovra"), std::string_view::npos);
    EXPECT_EQ(findText({}, "kovra"), std::string_view::npos);
    EXPECT_EQ(findText({}, {}), 0U);
    EXPECT_EQ(findText(whole, {}, 4), 4U);
}

} // namespace
} // namespace platform
