#include "kovraUninstaller/inventory/HIToolboxStore.hpp"

#include <gtest/gtest.h>

namespace kovra {
namespace {

using Value = platform::PropertyListValue;
using Array = Value::Array;
using Dictionary = Value::Dictionary;

Dictionary entry(const char* bundle) {
    return {{"Bundle ID", bundle}, {"InputSourceKind", "Keyboard Input Method"}};
}

TEST(PropertyListText, IsEachKeyAndStringOnALineOfItsOwn) {
    EXPECT_EQ(textOf(entry("ai.kovra.x")),
              "Bundle ID\nai.kovra.x\nInputSourceKind\nKeyboard Input Method\n");
    EXPECT_EQ(textOf("Grüße \"🎉\""), "Grüße \"🎉\"\n");
}

TEST(PropertyListText, HoldsNestedValuesAndDataInHexadecimal) {
    const Value value(
        Dictionary{{"a", Array{"b", Dictionary{{"c", Array{Array{"d"}}}}}},
                   {"e", Value::Data{std::byte{0x00}, std::byte{0xAB}, std::byte{0xFF}}}});
    EXPECT_EQ(textOf(value), "a\nb\nc\nd\ne\n00abff\n");
}

TEST(PropertyListText, LeavesOutWhatHoldsNoWord) {
    EXPECT_EQ(textOf(Array{1, 2.5, true, Value::Date{0}, Value()}), "");
    EXPECT_EQ(textOf(Dictionary{{"KeyboardLayout ID", -30768}}), "KeyboardLayout ID\n");
}

TEST(ProductEntry, IsKnownByTheWordInAnyCaseAndPlace) {
    for (const char* bundle :
         {"ai.kovra.inputmethod.KovraInput", "KOVRA", "xKoVrAx", "\u212Aovra", "x\nKovra\nx"}) {
        EXPECT_TRUE(isProductEntry(entry(bundle))) << bundle;
    }
    EXPECT_TRUE(isProductEntry(Dictionary{{"Kovra", 1}}));
    EXPECT_TRUE(isProductEntry(Dictionary{{"k", Array{Dictionary{{"x", "of kovra"}}}}}));
}

TEST(ProductEntry, IsNoneThatMerelyLooksAlike) {
    for (const char* bundle : {"com.apple.keylayout.US", "kov ra", "covra", "kоvra", "ko", ""}) {
        EXPECT_FALSE(isProductEntry(entry(bundle))) << bundle;
    }
    EXPECT_FALSE(isProductEntry(Dictionary{{"kov", "ra"}}));
    EXPECT_FALSE(isProductEntry(Dictionary{}));
}

TEST(InputSourceEntries, AreAnArrayOfDictionariesAndOfNothingElse) {
    Dictionary settings{{"entries", Array{entry("a"), entry("b")}},
                        {"empty", Array{}},
                        {"mixed", Array{entry("a"), "text"}},
                        {"text", "text"},
                        {"dictionary", entry("a")}};
    ASSERT_NE(inputSourceEntries(settings, "entries"), nullptr);
    EXPECT_EQ(inputSourceEntries(settings, "entries")->size(), 2U);
    ASSERT_NE(inputSourceEntries(settings, "empty"), nullptr);
    EXPECT_TRUE(inputSourceEntries(settings, "empty")->empty());
    for (const char* key : {"mixed", "text", "dictionary", "absent"}) {
        EXPECT_EQ(inputSourceEntries(settings, key), nullptr) << key;
    }
}

TEST(InputSourceEntries, OfTheProductGoFromEachOfTheFourListsAndNothingElseDoes) {
    const Dictionary kept{{"AppleEnabledInputSources", Array{entry("a"), entry("b")}},
                          {"AppleSelectedInputSources", Array{}},
                          {"AppleInputSourceHistory", Array{entry("kovra"), "no entry"}},
                          {"AppleCurrentKeyboardLayoutInputSourceID", "kovra"},
                          {"Kovra", Array{entry("kovra")}}};
    Dictionary settings = kept;
    settings["AppleEnabledInputSources"] =
        Array{entry("a"), entry("ai.kovra.x"), entry("b"), entry("KOVRA")};
    settings["AppleSelectedInputSources"] = Array{entry("kovra")};
    EXPECT_EQ(removeProductEntries(settings), 3U);
    EXPECT_EQ(settings, kept);
    settings["AppleDisabledInputSources"] = Array{entry("kovra")};
    EXPECT_EQ(removeProductEntries(settings), 1U);
    EXPECT_EQ(removeProductEntries(settings), 0U);
}

} // namespace
} // namespace kovra
