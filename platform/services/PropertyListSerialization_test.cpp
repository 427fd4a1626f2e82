#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSPropertyListSerialization.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/PropertyListSerialization.hpp"
#include "platform/testing/Python.hpp"
#include "platform/testing/SamplePropertyList.hpp"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Value = PropertyListValue;

std::string rewritten(const std::string& xml, const std::string& format) {
    return testing::python("import plistlib, sys\n"
                           "value = plistlib.loads(sys.stdin.buffer.read())\n"
                           "sys.stdout.buffer.write(plistlib.dumps(value, fmt=plistlib." +
                               format + "))\n",
                           xml);
}

TEST(PropertyListSerialization, AValueSurvivesAnotherParserInBothForms) {
    const auto xml = serializeXmlPropertyList(testing::samplePropertyList());
    ASSERT_TRUE(xml);
    EXPECT_EQ(parsePropertyList(*xml), testing::samplePropertyList());
    EXPECT_EQ(parsePropertyList(rewritten(*xml, "FMT_XML")), testing::samplePropertyList());
    EXPECT_EQ(parsePropertyList(rewritten(*xml, "FMT_BINARY")), testing::samplePropertyList());
}

// The toolkit writes numbers beyond INT64_MAX as negative ones.
TEST(PropertyListSerialization, ReadsTheBinaryFormThatTheToolkitWrites) {
    const objc::AutoreleasePool pool;
    Value value = testing::samplePropertyList();
    value.as<Value::Dictionary>()->erase("beyond");
    using foundation::NSPropertyListSerialization;
    const auto* binary = NSPropertyListSerialization::dataWithPropertyList(
        foundation::toFoundation(value), NSPropertyListSerialization::binaryFormat);
    ASSERT_NE(binary, nullptr);
    EXPECT_EQ(parsePropertyList({static_cast<const char*>(binary->bytes()), binary->length()}),
              value);
}

TEST(PropertyListSerialization, ATruncatedListIsRejected) {
    std::string xml = serializeXmlPropertyList(testing::samplePropertyList()).value();
    xml.pop_back();
    for (std::size_t length = 0; length < xml.size(); ++length) {
        EXPECT_EQ(parsePropertyList(std::string_view(xml).substr(0, length)), std::nullopt)
            << length;
    }
    EXPECT_TRUE(parsePropertyList(xml));
}

TEST(PropertyListSerialization, TextBeforeOrAfterAListIsRejected) {
    const std::string xml = serializeXmlPropertyList(Value::Dictionary{{"k", 1}}).value();
    EXPECT_EQ(parsePropertyList("2025-03-14 defaults[1] a warning\n" + xml), std::nullopt);
    EXPECT_EQ(parsePropertyList(xml + "defaults: a warning\n"), std::nullopt);
}

TEST(PropertyListSerialization, AHundredMegabytesOfRubbishAreRejected) {
    EXPECT_EQ(parsePropertyList(std::string(100'000'000, '<')), std::nullopt);
    EXPECT_EQ(parsePropertyList(std::string(100'000'000, '\0')), std::nullopt);
    EXPECT_EQ(parsePropertyList("<plist><string>" + std::string(100'000'000, 'x')), std::nullopt);
}

} // namespace
} // namespace platform
