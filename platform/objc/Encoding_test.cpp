#include "platform/objc/Encoding.hpp"
#include "platform/objc/Method.hpp"

#include <gtest/gtest.h>

namespace platform::objc {
namespace {

class Facade : public Object {};

class Derived : public Facade {};

struct Size {
    double width;
    double height;
};

} // namespace

template <>
struct Encoding<Size> : EncodedAs<"{CGSize=dd}"> {};

namespace {

TEST(FixedString, JoinsAtRunTime) {
    const FixedString first("+ ");
    const FixedString second("NSString");
    EXPECT_STREQ((first + second).characters, "+ NSString");
}

// The runtime's boolean is a bool or a byte.
const std::string truth = std::is_same_v<Bool, bool> ? "B" : "C";

template <class T>
std::string_view encoded() {
    return Encoding<T>::value.view();
}

TEST(FixedString, JoinsAtCompileTime) {
    constexpr auto joined = FixedString("+ ") + FixedString("NSString") + FixedString("");
    static_assert(joined.view() == "+ NSString");
    EXPECT_STREQ(joined.characters, "+ NSString");
}

TEST(Encoding, OfNumbersHasTheirWidthAndSign) {
    EXPECT_EQ(encoded<char>(), "c");
    EXPECT_EQ(encoded<unsigned char>(), "C");
    EXPECT_EQ(encoded<std::int16_t>(), "s");
    EXPECT_EQ(encoded<std::uint16_t>(), "S");
    EXPECT_EQ(encoded<std::int32_t>(), "i");
    EXPECT_EQ(encoded<std::uint32_t>(), "I");
    EXPECT_EQ(encoded<long>(), "q");
    EXPECT_EQ(encoded<unsigned long long>(), "Q");
    EXPECT_EQ(encoded<float>(), "f");
    EXPECT_EQ(encoded<double>(), "d");
    EXPECT_EQ(encoded<bool>(), "B");
    EXPECT_EQ(encoded<Bool>(), truth);
}

TEST(Encoding, OfEveryFacadeIsAnObject) {
    EXPECT_EQ(encoded<id>(), "@");
    EXPECT_EQ(encoded<Facade*>(), "@");
    EXPECT_EQ(encoded<const Facade*>(), "@");
    EXPECT_EQ(encoded<Derived*>(), "@");
    EXPECT_EQ(encoded<Facade**>(), "^@");
}

TEST(Encoding, OfPointersNamesWhatTheyPointTo) {
    EXPECT_EQ(encoded<Class>(), "#");
    EXPECT_EQ(encoded<SEL>(), ":");
    EXPECT_EQ(encoded<void*>(), "^v");
    EXPECT_EQ(encoded<const void*>(), "r^v");
    EXPECT_EQ(encoded<const char*>(), "r*");
    EXPECT_EQ(encoded<unsigned long*>(), "^Q");
    EXPECT_EQ(encoded<const double*>(), "r^d");
    EXPECT_EQ(encoded<Size*>(), "^{CGSize=dd}");
}

TEST(Encoding, OfAMethodIsItsResultTheReceiverTheSelectorAndItsArguments) {
    EXPECT_EQ(MethodEncoding<void()>::value.view(), "v@:");
    EXPECT_EQ((MethodEncoding<Facade*(Size, const char*, Bool)>::value.view()),
              "@@:{CGSize=dd}r*" + truth);
}

TEST(Encoding, AgreesWithTheRuntimes) {
    // The runtime adds the size of the frame.
    const Method retainCount =
        class_getInstanceMethod(requireClass("NSObject"), sel_registerName("retainCount"));
    char result[16] = {};
    method_getReturnType(retainCount, result, sizeof result);
    EXPECT_TRUE(std::string_view(result).starts_with(encoded<UInteger>())) << result;
}

} // namespace
} // namespace platform::objc
