#include "platform/services/PropertyListSerialization.hpp"
#include "platform/services/propertylist/PropertyListForms.hpp"
#include "platform/testing/Python.hpp"
#include "platform/testing/SamplePropertyList.hpp"

#include <gmock/gmock.h>

#include <limits>

namespace platform::propertylist {
namespace {

using namespace std::string_literals;
using ::testing::HasSubstr;
using ::testing::Optional;
using Value = PropertyListValue;

TEST(XmlPropertyListWriter, WritesTheFormThatTheSystemWrites) {
    EXPECT_EQ(serializeXmlPropertyList(Value::Dictionary{{"k", Value::Array{1, "<&>", true, 0.5}}}),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
              "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
              "<plist version=\"1.0\">\n<dict>\n<key>k</key>\n<array>\n<integer>1</integer>\n"
              "<string>&lt;&amp;&gt;</string>\n<true/>\n<real>0.5</real>\n</array>\n</dict>\n"
              "</plist>\n");
}

TEST(XmlPropertyListWriter, WhatItWritesIsReadAsTheSameValue) {
    const auto xml = serializeXmlPropertyList(testing::samplePropertyList());
    ASSERT_TRUE(xml);
    EXPECT_EQ(readXml(*xml), testing::samplePropertyList());
}

TEST(XmlPropertyListWriter, EveryCharacterOfXmlSurvivesARoundTrip) {
    std::string all;
    for (std::uint32_t c = 1; c <= 0xFFFF; ++c) {
        const bool sayable = c >= 0x20 || c == '\t' || c == '\n' || c == '\r';
        if (sayable && c >> 11U != 0x1B && c < 0xFFFE) {
            all += c < 0x80    ? std::string(1, static_cast<char>(c))
                   : c < 0x800 ? std::string{static_cast<char>(0xC0 | c >> 6U),
                                             static_cast<char>(0x80 | (c & 0x3FU))}
                               : std::string{static_cast<char>(0xE0 | c >> 12U),
                                             static_cast<char>(0x80 | (c >> 6U & 0x3FU)),
                                             static_cast<char>(0x80 | (c & 0x3FU))};
        }
    }
    all += "\U00010000\U0001F389\U0010FFFF";
    const Value value(Value::Dictionary{{all, all}});
    EXPECT_TRUE(readXml(serializeXmlPropertyList(value).value()) == value);
}

TEST(XmlPropertyListWriter, RefusesWhatAPropertyListCannotHoldAtAnyDepth) {
    const double year10000 = 252423993600.0;
    for (const Value& unwritable :
         {Value(), Value("\xFF"), Value("\x01"), Value("a\0b"s), Value("\uFFFF"), Value("\uFFFE"),
          Value(Value::Date{std::numeric_limits<double>::quiet_NaN()}),
          Value(Value::Date{std::numeric_limits<double>::infinity()}),
          Value(Value::Date{year10000}), Value(Value::Dictionary{{"\xFF", 1}})}) {
        EXPECT_EQ(serializeXmlPropertyList(unwritable), std::nullopt);
        EXPECT_EQ(serializeXmlPropertyList(Value::Array{1, unwritable, 2}), std::nullopt);
        EXPECT_EQ(serializeXmlPropertyList(Value::Dictionary{{"a", unwritable}, {"b", 1}}),
                  std::nullopt);
    }
}

TEST(XmlPropertyListWriter, WritesNumbersInFullWhateverTheLocale) {
    ::setlocale(LC_ALL, "C.UTF-8");
    EXPECT_THAT(serializeXmlPropertyList(Value(1e21)), Optional(HasSubstr("<real>1e+21</real>")));
    EXPECT_THAT(serializeXmlPropertyList(Value(0.1)), Optional(HasSubstr("<real>0.1</real>")));
    const auto reals = Value(Value::Array{std::numeric_limits<double>::infinity(),
                                          -std::numeric_limits<double>::infinity()});
    EXPECT_EQ(readXml(serializeXmlPropertyList(reals).value()), reals);
}

// Our list as Python's plistlib reads it.
TEST(XmlPropertyListWriter, AnotherParserReadsTheSameTypesAndValues) {
    const std::string program = "import plistlib, sys\n"
                                "value = plistlib.loads(sys.stdin.buffer.read())\n"
                                "for key in sorted(value): print(ascii(key), ascii(value[key]))\n";
    EXPECT_EQ(
        testing::python(program, serializeXmlPropertyList(testing::samplePropertyList()).value()),
        "'' 'an empty key'\n"
        "'beyond' [9223372036854775808, 18446744073709551615]\n"
        "'data' [b'', b'\\x00', b'\\x01\\x02', b'\\xff\\x00\\x7f', b'kovra']\n"
        "'date' [datetime.datetime(2001, 1, 1, 0, 0), datetime.datetime(2025, 3, 14, 9, 26, 53), "
        "datetime.datetime(1970, 1, 1, 0, 0)]\n"
        "'key <&> \\U0001f389\\n' {}\n"
        "'nested' [[], {'a': [1, 'b']}]\n"
        "'real' [0.0, 1.0, -0.5, 0.1, 1e+300, 5e-324, 3.141592653589793]\n"
        "'text' ['', ' ', 'plain', '\\n\\ttabbed \\n', '<&>\"\\'', ']]>', 'Gr\\xfc\\xdfe', "
        "'\\u65e5\\u672c\\u8a9e', '\\U0001f389\\U0001d11e', '\\u212a', '\\ufffd']\n"
        "'truth' [True, False]\n"
        "'whole' [0, 1, -1, 255, 256, 65535, 65536, 4294967295, 4294967296, -30768, "
        "-9223372036854775808, 9223372036854775807]\n");
}

} // namespace
} // namespace platform::propertylist
