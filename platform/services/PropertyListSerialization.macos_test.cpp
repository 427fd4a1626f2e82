// The Mac's own serialization.

#include "platform/services/PropertyListSerialization.hpp"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Value = PropertyListValue;

TEST(PropertyListSerializationOnAMac, KeepsWhatKeyboardSettingsHold) {
    const Value settings = Value::Dictionary{
        {"AppleEnabledInputSources",
         Value::Array{Value::Dictionary{{"InputSourceKind", "Keyboard Layout"},
                                        {"KeyboardLayout ID", -30768},
                                        {"KeyboardLayout Name", "Grüße <&>"}},
                      Value::Dictionary{{"Bundle ID", "ai.kovra"}, {"Input Mode", "日本語"}}}},
        {"AppleInputSourceUpdateTime", Value::Date{763637213}},
        {"AppleDictationAutoEnable", true},
        {"scale", 0.5},
        {"blob", Value::Data{std::byte{0}, std::byte{0xFF}}},
        {"empty", Value::Array{}},
    };
    const auto xml = serializeXmlPropertyList(settings);
    ASSERT_TRUE(xml);
    EXPECT_TRUE(xml->starts_with("<?xml"));
    EXPECT_EQ(parsePropertyList(*xml), settings);
}

// Nested arrays in the binary form; each but the last has one element, the next.
std::string nestedLists(int levels) {
    const auto number = [](int value) {
        return std::string{static_cast<char>(value >> 8), static_cast<char>(value)};
    };
    std::string bytes = "bplist00";
    std::string offsets;
    for (int i = 1; i <= levels; ++i) {
        offsets += number(static_cast<int>(bytes.size()));
        bytes += i < levels ? "\xA1" + number(i) : "\xA0";
    }
    const auto longNumber = [&](int value) { return std::string(6, '\0') + number(value); };
    return bytes + offsets + std::string(6, '\0') + "\2\2" + longNumber(levels) + longNumber(0) +
           longNumber(static_cast<int>(bytes.size()));
}

TEST(PropertyListSerializationOnAMac, RejectsMoreThan512Levels) {
    EXPECT_TRUE(parsePropertyList(nestedLists(512)));
    EXPECT_EQ(parsePropertyList(nestedLists(513)), std::nullopt);
}

TEST(PropertyListSerializationOnAMac, RejectsWhatIsNoPropertyList) {
    EXPECT_EQ(parsePropertyList(""), std::nullopt);
    EXPECT_EQ(parsePropertyList("<plist><array>"), std::nullopt);
}

TEST(PropertyListSerializationOnAMac, WritesNothingThatIsNoPropertyList) {
    EXPECT_EQ(serializeXmlPropertyList(Value()), std::nullopt);
    EXPECT_EQ(serializeXmlPropertyList(Value::Dictionary{{"no UTF-8", "\xff"}}), std::nullopt);
}

} // namespace
} // namespace platform
