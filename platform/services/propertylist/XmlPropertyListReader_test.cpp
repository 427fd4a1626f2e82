#include "platform/services/propertylist/PropertyListForms.hpp"

#include <gmock/gmock.h>

#include <limits>

namespace platform::propertylist {
namespace {

using namespace std::string_literals;
using Value = PropertyListValue;

const std::string head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n";

std::optional<Value> read(const std::string& element) {
    return readXml(head + element + "\n</plist>\n");
}

std::string repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

TEST(XmlPropertyListReader, ReadsEachType) {
    EXPECT_EQ(read("<true/>"), Value(true));
    EXPECT_EQ(read("<false/>"), Value(false));
    EXPECT_EQ(read("<string>text</string>"), Value("text"));
    EXPECT_EQ(read("<integer>-30768</integer>"), Value(-30768));
    EXPECT_EQ(read("<real>0.5</real>"), Value(0.5));
    EXPECT_EQ(read("<date>2025-03-14T09:26:53Z</date>"), Value(Value::Date{763637213}));
    EXPECT_EQ(read("<data>\n\tAP8=\n</data>"), Value(Value::Data{std::byte{0}, std::byte{0xFF}}));
    EXPECT_EQ(read("<array/>"), Value(Value::Array{}));
    EXPECT_EQ(read("<dict><key>k</key><array><string/></array></dict>"),
              Value(Value::Dictionary{{"k", Value::Array{""}}}));
}

TEST(XmlPropertyListReader, ReadsIntegersToTheEndsOfBothRanges) {
    EXPECT_EQ(read("<integer> 18446744073709551615 </integer>"),
              Value(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_EQ(read("<integer>-9223372036854775808</integer>"),
              Value(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(read("<integer>0x1F</integer>"), Value(31));
    EXPECT_EQ(read("<integer>+5</integer>"), Value(5));
    EXPECT_EQ(read("<integer>-0</integer>"), Value(0));
    for (const char* wrong : {"", "-", "1.5", "1 2", "0x", "five", "18446744073709551616",
                              "-9223372036854775809", "+-1"}) {
        EXPECT_EQ(read("<integer>"s + wrong + "</integer>"), std::nullopt) << wrong;
    }
}

TEST(XmlPropertyListReader, ReadsInfinityAndNaN) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(read("<real>+infinity</real>"), Value(infinity));
    EXPECT_EQ(read("<real>-infinity</real>"), Value(-infinity));
    const auto nan = read("<real>nan</real>");
    ASSERT_TRUE(nan);
    EXPECT_NE(*nan->as<double>(), *nan->as<double>());
    for (const char* wrong : {"", "one", "+-1", "1,5", "1e"}) {
        EXPECT_EQ(read("<real>"s + wrong + "</real>"), std::nullopt) << wrong;
    }
}

TEST(XmlPropertyListReader, KeepsTextExactly) {
    EXPECT_EQ(read("<string> a\n b&#13;\t</string>"), Value(" a\n b\r\t"));
    EXPECT_EQ(read("<string>&lt;&amp;&gt;&quot;&apos;&#x1F389;&#x212A;</string>"),
              Value("<&>\"'\U0001F389\u212A"));
    EXPECT_EQ(read("<string><![CDATA[<b>&amp;]]> and<!-- not --> this</string>"),
              Value("<b>&amp; and this"));
}

TEST(XmlPropertyListReader, ReadsOtherDeclaredEncodings) {
    EXPECT_EQ(readXml("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><plist><string>\xE9</string>"
                      "</plist>"),
              Value("é"));
    EXPECT_EQ(readXml("\xEF\xBB\xBF<plist><string>é</string></plist>"), Value("é"));
}

TEST(XmlPropertyListReader, OfTwoValuesUnderOneKeyTakesTheLast) {
    EXPECT_EQ(read("<dict><key>k</key><true/><key>k</key><false/></dict>"),
              Value(Value::Dictionary{{"k", false}}));
}

TEST(XmlPropertyListReader, GivesNothingForWhatIsNoPropertyList) {
    for (const char* wrong :
         {"", "<plist/>", "<plist></plist>", "text", "<html><body/></html>", "{ a = 1; }",
          "<plist><true/><true/></plist>", "<plist><unknown/></plist>", "<plist>text</plist>",
          "<plist><array>text</array></plist>", "<plist><plist><true/></plist></plist>",
          "<plist><string><b>x</b></string></plist>", "<plist><key>k</key></plist>",
          "<plist><data>@</data></plist>", "<plist><date>today</date></plist>",
          "<plist><true/></plist><plist><true/></plist>", "<plist><true/></plist>rubbish"}) {
        EXPECT_EQ(readXml(wrong), std::nullopt) << wrong;
    }
}

TEST(XmlPropertyListReader, GivesNothingWhenKeysAndValuesDoNotAlternate) {
    for (const char* wrong : {"<key>k</key>", "<true/>", "<key>k</key><key>l</key><true/>",
                              "<key>k</key><true/><true/>", "<key>k</key><array>"}) {
        EXPECT_EQ(read("<dict>"s + wrong + "</dict>"), std::nullopt) << wrong;
    }
    EXPECT_EQ(read("<array><key>k</key></array>"), std::nullopt);
}

TEST(XmlPropertyListReader, GivesNothingForBytesThatAreNotUtf8OrNotXmlCharacters) {
    EXPECT_EQ(read("<string>\xFF</string>"), std::nullopt);
    EXPECT_EQ(read("<string>\xED\xA0\x80</string>"), std::nullopt);
    EXPECT_EQ(read("<string>a\0b</string>"s), std::nullopt);
    EXPECT_EQ(read("<string>&#0;</string>"), std::nullopt);
    EXPECT_EQ(read("<string>\x01</string>"), std::nullopt);
}

TEST(XmlPropertyListReader, RefusesEntitiesOfTheExternalDefinition) {
    EXPECT_EQ(read("<string>a&nbsp;b</string>"), std::nullopt);
    EXPECT_EQ(read("<dict><key>&kovra;</key><true/></dict>"), std::nullopt);
}

TEST(XmlPropertyListReader, RefusesEntityDeclarationsOfEveryKind) {
    const auto with = [](const std::string& subset, const std::string& text) {
        return readXml("<!DOCTYPE plist [" + subset + "]><plist><string>" + text +
                       "</string></plist>");
    };
    std::string bomb = "<!ENTITY a0 \"aaaaaaaaaa\">";
    for (int i = 1; i < 12; ++i) {
        const std::string inner = "&a" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(i) + " \"" + repeated(inner, 10) + "\">";
    }
    EXPECT_EQ(with(bomb, "&a11;"), std::nullopt);
    EXPECT_EQ(with("<!ENTITY file SYSTEM \"file:///etc/passwd\">", "&file;"), std::nullopt);
    EXPECT_EQ(with("<!ENTITY % p SYSTEM \"file:///etc/passwd\"> %p;", "x"), std::nullopt);
    EXPECT_EQ(with("<!ENTITY a \"unused\">", "x"), std::nullopt);
}

TEST(XmlPropertyListReader, Reads512LevelsAndGivesNothingForMore) {
    const auto nested = [](int depth) {
        return read(repeated("<array>", depth) + repeated("</array>", depth));
    };
    EXPECT_TRUE(nested(512));
    EXPECT_EQ(nested(513), std::nullopt);
    EXPECT_EQ(nested(100'000), std::nullopt);
    EXPECT_EQ(read(repeated("<dict><key>k</key>", 100'000)), std::nullopt);
    EXPECT_EQ(readXml(repeated("<plist>", 100'000)), std::nullopt);
}

TEST(XmlPropertyListReader, ReadsALineOfTenMegabytes) {
    const std::string line(10'000'000, 'x');
    EXPECT_TRUE(read("<string>" + line + "</string>") == Value(line));
}

} // namespace
} // namespace platform::propertylist
