#include "platform/services/propertylist/PropertyListForms.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace platform::propertylist {
namespace {

PropertyListValue::Data bytes(std::string_view text) {
    PropertyListValue::Data data;
    for (const char c : text) {
        data.push_back(static_cast<std::byte>(c));
    }
    return data;
}

TEST(Base64, EncodesTheKnownExamplesBothWays) {
    for (const auto& [plain, text] :
         {std::pair("", ""), std::pair("f", "Zg=="), std::pair("fo", "Zm8="),
          std::pair("foo", "Zm9v"), std::pair("foob", "Zm9vYg=="), std::pair("fooba", "Zm9vYmE="),
          std::pair("foobar", "Zm9vYmFy"), std::pair("\xFB\xFF\xFE", "+//+")}) {
        EXPECT_EQ(encodeBase64(bytes(plain)), text);
        EXPECT_EQ(decodeBase64(text), bytes(plain));
    }
}

TEST(Base64, EveryLengthAndByteSurvivesARoundTrip) {
    PropertyListValue::Data data;
    for (unsigned i = 0; i < 600; ++i) {
        EXPECT_EQ(decodeBase64(encodeBase64(data)), data);
        data.push_back(static_cast<std::byte>(i * 7));
    }
}

TEST(Base64, WhiteSpaceIsIgnoredAndOtherCharactersAreRefused) {
    EXPECT_EQ(decodeBase64("\n\t Zm9v\r\n  YmFy \n"), bytes("foobar"));
    for (const char* text : {"Zm9v!", "Zg==Zg==", "Zm-v", "Z\xC3\xBC"}) {
        EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
    }
}

using Date = PropertyListValue::Date;

TEST(PropertyListDate, IsWrittenAndReadToTheSecond) {
    for (const auto& [seconds, text] :
         {std::pair(0.0, "2001-01-01T00:00:00Z"), std::pair(763637213.0, "2025-03-14T09:26:53Z"),
          std::pair(-1.0, "2000-12-31T23:59:59Z"), std::pair(99619200.0, "2004-02-28T00:00:00Z"),
          std::pair(99705600.0, "2004-02-29T00:00:00Z"),
          std::pair(-63113904000.0, "0001-01-01T00:00:00Z"),
          std::pair(252423993599.0, "9999-12-31T23:59:59Z")}) {
        EXPECT_EQ(formatDate({seconds}), text);
        EXPECT_EQ(parseDate(text), Date{seconds});
    }
}

TEST(PropertyListDate, APartOfASecondIsRoundedDown) {
    EXPECT_EQ(formatDate({0.999}), "2001-01-01T00:00:00Z");
    EXPECT_EQ(formatDate({-0.001}), "2000-12-31T23:59:59Z");
}

TEST(PropertyListDate, ADateOutsideTheCalendarIsNotWritten) {
    for (const double seconds :
         {252423993600.0, -63145526401.0, 1e18, -1e300, std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(formatDate({seconds}), std::nullopt) << seconds;
    }
}

TEST(PropertyListDate, ALeapSecondIsTheNextMinute) {
    EXPECT_EQ(parseDate("2016-12-31T23:59:60Z"), parseDate("2017-01-01T00:00:00Z"));
}

TEST(PropertyListDate, NoOtherFormIsRead) {
    for (const char* text : {"",
                             "2025-03-14",
                             "2025-03-14T09:26:53",
                             "2025-03-14T09:26:53z",
                             "2025-03-14 09:26:53Z",
                             "2025-3-14T09:26:53Z",
                             "2025-03-14T9:26:53Z",
                             " 2025-03-14T09:26:53Z",
                             "2025-03-14T09:26:53Z ",
                             "2025- 3-14T09:26:53Z",
                             "2025-03-14T+9:26:53Z",
                             "-025-03-14T09:26:53Z",
                             "2025-03-14T09:26:53.5Z",
                             "2025-02-29T00:00:00Z",
                             "2025-13-01T00:00:00Z",
                             "2025-00-01T00:00:00Z",
                             "2025-01-00T00:00:00Z",
                             "2025-01-01T24:00:00Z",
                             "2025-01-01T00:60:00Z",
                             "2025-01-01T00:00:61Z"}) {
        EXPECT_EQ(parseDate(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace platform::propertylist
