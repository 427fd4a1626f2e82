#include "platform/services/propertylist/Base64.hpp"

#include <gtest/gtest.h>

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

TEST(Base64, EveryLengthAndByteComesBack) {
    PropertyListValue::Data data;
    for (unsigned i = 0; i < 600; ++i) {
        EXPECT_EQ(decodeBase64(encodeBase64(data)), data);
        data.push_back(static_cast<std::byte>(i * 7));
    }
}

TEST(Base64, WhiteSpaceIsPassedOverAndForeignCharactersAreNot) {
    EXPECT_EQ(decodeBase64("\n\t Zm9v\r\n  YmFy \n"), bytes("foobar"));
    for (const char* text : {"Zm9v!", "Zg==Zg==", "Zm-v", "Z\xC3\xBC"}) {
        EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace platform::propertylist
