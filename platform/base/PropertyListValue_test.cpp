#include "platform/base/PropertyListValue.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace platform {
namespace {

using Value = PropertyListValue;

TEST(PropertyListValue, ADefaultConstructedOneIsOfNoType) {
    EXPECT_TRUE(std::holds_alternative<std::monostate>(Value().variant()));
    EXPECT_NE(Value(), Value(false));
    EXPECT_NE(Value(), Value(""));
}

TEST(PropertyListValue, AnIntegerIsEqualWhateverTypeItWasMadeOf) {
    EXPECT_EQ(Value(std::uint64_t{7}), Value(7));
    EXPECT_EQ(Value(std::uint64_t{7}), Value(std::int64_t{7}));
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_NE(Value(static_cast<std::uint64_t>(largest)).as<std::int64_t>(), nullptr);
    EXPECT_NE(Value(static_cast<std::uint64_t>(largest) + 1).as<std::uint64_t>(), nullptr);
}

TEST(PropertyListValue, BooleansIntegersAndRealsAreDistinct) {
    EXPECT_NE(Value(true), Value(1));
    EXPECT_NE(Value(false), Value(0));
    EXPECT_NE(Value(1.0), Value(1));
    EXPECT_EQ(Value("text").as<bool>(), nullptr);
    EXPECT_EQ(*Value("text").as<std::string>(), "text");
}

TEST(PropertyListValue, ACopyIsIndependent) {
    Value original(Value::Array{Value::Dictionary{{"key", "old"}}});
    const Value copy = original;
    original.as<Value::Array>()->front().as<Value::Dictionary>()->insert_or_assign("key", "new");
    EXPECT_NE(copy, original);
    EXPECT_EQ(copy, Value(Value::Array{Value::Dictionary{{"key", "old"}}}));
}

} // namespace
} // namespace platform
