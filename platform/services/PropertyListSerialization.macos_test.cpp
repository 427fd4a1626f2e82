// The Mac's property lists by this toolkit's classes, which are sound for what is asked here; what
// they are not sound for is why this system reads and writes its own.

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

TEST(PropertyListSerializationOnAMac, WritesNothingThatIsNoPropertyList) {
    EXPECT_EQ(serializeXmlPropertyList(Value()), std::nullopt);
    EXPECT_EQ(serializeXmlPropertyList(Value::Dictionary{{"no UTF-8", "\xff"}}), std::nullopt);
}

} // namespace
} // namespace platform
