#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSDictionary.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/foundation/NSPropertyListSerialization.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/testing/SamplePropertyList.hpp"

#include <gtest/gtest.h>

namespace platform::foundation {
namespace {

using namespace std::string_literals;
using Value = PropertyListValue;

class Conversions : public ::testing::Test {
  protected:
    const objc::AutoreleasePool pool;
};

TEST_F(Conversions, TextSurvivesARoundTrip) {
    for (const std::string& text :
         {""s, "plain"s, "Grüße 日本語 🎉𝄞"s, "a\0b"s, "\uFEFFmark"s, "e\u0301"s, "\uFFFF"s}) {
        EXPECT_EQ(toString(toNSString(text)), text);
    }
    const std::string line(10'000'000, 'x');
    EXPECT_TRUE(toString(toNSString(line)) == line);
}

TEST_F(Conversions, IllFormedUtf8BecomesNullAndNullBecomesEmpty) {
    EXPECT_EQ(toNSString("\xFF"), nullptr);
    EXPECT_EQ(toNSString("\xED\xA0\x80"), nullptr);
    EXPECT_EQ(toString(nullptr), "");
}

TEST_F(Conversions, AValueOfEveryTypeSurvivesARoundTrip) {
    EXPECT_EQ(toPropertyListValue(toFoundation(testing::samplePropertyList())),
              testing::samplePropertyList());
}

TEST_F(Conversions, BooleansAndNumbersAreDistinct) {
    EXPECT_EQ(toPropertyListValue(NSNumber::numberWithBool(true)), Value(true));
    EXPECT_EQ(toPropertyListValue(NSNumber::numberWithBool(false)), Value(false));
    EXPECT_EQ(toPropertyListValue(NSNumber::numberWithLongLong(1)), Value(1));
    EXPECT_EQ(toPropertyListValue(NSNumber::numberWithLongLong(0)), Value(0));
    EXPECT_EQ(toPropertyListValue(NSNumber::numberWithDouble(1)), Value(1.0));
    EXPECT_EQ(toPropertyListValue(NSNumber::numberWithUnsignedLongLong(7)), Value(7));
    auto* single = objc::ClassMethod<"NSNumber", "numberWithFloat:", NSNumber*(float)>::send(0.25);
    EXPECT_EQ(toPropertyListValue(single), Value(0.25));
}

TEST_F(Conversions, WhatIsNoPropertyListBecomesNull) {
    EXPECT_EQ(toFoundation(Value()), nullptr);
    EXPECT_EQ(toFoundation(Value("\xFF")), nullptr);
    EXPECT_EQ(toFoundation(Value::Array{1, Value()}), nullptr);
    EXPECT_EQ(toFoundation(Value::Dictionary{{"k", Value::Array{Value()}}}), nullptr);
    EXPECT_EQ(toFoundation(Value::Dictionary{{"\xFF", 1}}), nullptr);
}

TEST_F(Conversions, ObjectsOfOtherClassesBecomeAValueOfNoType) {
    EXPECT_EQ(toPropertyListValue(nullptr), Value());
    EXPECT_EQ(toPropertyListValue(objc::ClassMethod<"NSNull", "null", NSObject*()>::send()),
              Value());
    auto* odd = NSMutableDictionary::dictionaryWithCapacity(1);
    odd->setObject(toNSString("value"), NSNumber::numberWithLongLong(1));
    EXPECT_EQ(toPropertyListValue(odd), Value());
}

// A string in that many nested arrays, or dictionaries.
NSObject* inLists(int levels) {
    NSObject* object = toNSString("innermost");
    for (int i = 0; i < levels; ++i) {
        object = NSArray::arrayWithObject(object);
    }
    return object;
}

NSObject* inDictionaries(int levels) {
    NSObject* object = toNSString("innermost");
    for (int i = 0; i < levels; ++i) {
        auto* dictionary = NSMutableDictionary::dictionaryWithCapacity(1);
        dictionary->setObject(object, toNSString("key"));
        object = dictionary;
    }
    return object;
}

TEST_F(Conversions, Take512LevelsAndNoMore) {
    for (const auto nested : {inLists, inDictionaries}) {
        const Value deepest = toPropertyListValue(nested(511));
        EXPECT_NE(deepest, Value());
        EXPECT_EQ(toPropertyListValue(toFoundation(deepest)), deepest);
        EXPECT_EQ(toPropertyListValue(nested(512)), Value());
        EXPECT_EQ(toPropertyListValue(nested(10'000)), Value());
        EXPECT_EQ(toFoundation(Value::Array{deepest}), nullptr);
        EXPECT_EQ(toFoundation(Value::Dictionary{{"k", 1}, {"l", deepest}}), nullptr);
    }
}

TEST_F(Conversions, AValueWithATooDeepPartIsDroppedWhole) {
    auto* array = NSMutableArray::arrayWithCapacity(3);
    array->addObject(toNSString("before"));
    array->addObject(inLists(511));
    array->addObject(toNSString("behind"));
    EXPECT_EQ(toPropertyListValue(array), Value());
}

// GNUstep's own parser for comparison; it saturates numbers above INT64_MAX.
TEST_F(Conversions, AnotherParsersBinaryFormHoldsTheSameValue) {
    Value value = testing::samplePropertyList();
    value.as<Value::Dictionary>()->erase("beyond");
    const NSData* binary = NSPropertyListSerialization::dataWithPropertyList(
        toFoundation(value), NSPropertyListSerialization::binaryFormat);
    ASSERT_NE(binary, nullptr);
    EXPECT_EQ(toPropertyListValue(
                  NSPropertyListSerialization::propertyListWithData(const_cast<NSData*>(binary))),
              value);
}

} // namespace
} // namespace platform::foundation
