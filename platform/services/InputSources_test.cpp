#include "platform/services/InputSources.hpp"
#include "platform/services/PropertyListSerialization.hpp"
#include "platform/testing/PrivateMounts.hpp"

#include <gmock/gmock.h>

#include <thread>

namespace platform {
namespace {

using Value = PropertyListValue;
using ::testing::Optional;

const std::string registry = "/var/db/practice-mac/input-sources.plist";

Value source(const char* identifier, const char* bundle, bool enabled, bool selected) {
    return Value::Dictionary{{"InputSourceID", identifier},
                             {"BundleID", bundle},
                             {"Enabled", enabled},
                             {"Selected", selected},
                             {"KeyboardLayout ID", -30768}};
}

class InputSources : public ::testing::Test {
  protected:
    void SetUp() override { testing::PrivateMounts::overlay("/var"); }

    static void store(const std::string& content) {
        std::filesystem::create_directories("/var/db/practice-mac");
        std::ofstream(registry, std::ios::binary) << content;
    }

    static void storeList(const Value& list) { store(serializeXmlPropertyList(list).value()); }

    static Value stored() { return parsePropertyList(testing::contentOf(registry)).value(); }

    void TearDown() override { std::filesystem::remove_all("/var/db/practice-mac"); }

    const Value us = source("com.apple.keylayout.US", "", true, true);
    const Value main = source("ai.kovra.inputmethod.KovraInput.Main", "ai.kovra", true, false);
    const Value mode = source("ai.KOVRA.mode", "ai.kovra", false, false);
};

TEST_F(InputSources, AreNoneWithoutARegistryOrWithOneOfTheWrongForm) {
    EXPECT_EQ(inputSourceCount("ai.kovra"), 0);
    EXPECT_EQ(currentInputSourceIdentifier(), std::nullopt);
    EXPECT_FALSE(selectInputSource("com.apple.keylayout.US"));
    EXPECT_EQ(disableInputSourcesContaining("kovra"), 0);
    for (const char* content : {"", "rubbish", "<plist><dict/></plist>",
                                "<plist><array><string>BundleID</string></array></plist>"}) {
        store(content);
        EXPECT_EQ(inputSourceCount("ai.kovra"), 0) << content;
        EXPECT_EQ(currentInputSourceIdentifier(), std::nullopt) << content;
    }
}

TEST_F(InputSources, AreCountedByBundleIncludingDisabledOnes) {
    storeList(Value::Array{us, main, mode, main, "no source"});
    EXPECT_EQ(inputSourceCount("ai.kovra"), 3);
    EXPECT_EQ(inputSourceCount("ai.kovr"), 0);
}

TEST_F(InputSources, TheActiveOneIsKnownByItsIdentifier) {
    storeList(Value::Array{main, us});
    EXPECT_THAT(currentInputSourceIdentifier(), Optional(std::string("com.apple.keylayout.US")));
    storeList(Value::Array{Value::Dictionary{{"Selected", true}}});
    EXPECT_THAT(currentInputSourceIdentifier(), Optional(std::string()));
    storeList(Value::Array{main});
    EXPECT_EQ(currentInputSourceIdentifier(), std::nullopt);
}

TEST_F(InputSources, SelectingOneMakesItTheOnlyActiveOneAndKeepsTheRest) {
    storeList(Value::Array{us, mode});
    EXPECT_TRUE(selectInputSource("ai.KOVRA.mode"));
    EXPECT_EQ(stored(), Value(Value::Array{source("com.apple.keylayout.US", "", true, false),
                                           source("ai.KOVRA.mode", "ai.kovra", true, true)}));
}

TEST_F(InputSources, SelectingOneThatIsNotThereChangesNothing) {
    const Value before(Value::Array{us, mode});
    storeList(before);
    EXPECT_FALSE(selectInputSource("com.apple.keylayout"));
    EXPECT_EQ(stored(), before);
}

TEST_F(InputSources, AbortOffTheMainThread) {
    const auto dies = [](auto call) {
        EXPECT_DEATH(std::thread(call).join(), "off the main thread");
    };
    dies([] { return inputSourceCount("ai.kovra"); });
    dies([] { return currentInputSourceIdentifier(); });
    dies([] { return selectInputSource("com.apple.keylayout.US"); });
    dies([] { return disableInputSourcesContaining("kovra"); });
}

TEST_F(InputSources, AreDisabledByAWordInTheirIdentifierWhateverItsCase) {
    storeList(Value::Array{us, main, mode});
    EXPECT_EQ(disableInputSourcesContaining("kovra"), 2);
    EXPECT_EQ(
        stored(),
        Value(Value::Array{
            us, source("ai.kovra.inputmethod.KovraInput.Main", "ai.kovra", false, false), mode}));
    EXPECT_EQ(disableInputSourcesContaining("absent"), 0);
}

} // namespace
} // namespace platform
