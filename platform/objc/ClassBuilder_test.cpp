#include "platform/objc/ClassBuilder.hpp"
#include "platform/objc/Retained.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>

namespace platform::objc {
namespace {

class Counter : public Object {};

// Shows by the release of an object whether a callback had an autorelease pool of its own.
Object* bystander = nullptr;

int add(Counter* self, int amount) {
    auto* total = static_cast<int*>(pointerVariable(self, "total"));
    return *total += amount;
}

double scaled(Counter*, double value, const char* text, Bool negative) {
    return (negative != NO ? -value : value) * static_cast<double>(std::string_view(text).size());
}

void autoreleaseOnce(Counter*) {
    InstanceMethod<"NSObject", "retain", id()>::send(bystander);
    InstanceMethod<"NSObject", "autorelease", id()>::send(bystander);
}

void fail(Counter*) {
    throw std::runtime_error("out of a callback");
}

Class counterClass() {
    static const Class built = ClassBuilder("KovraTestCounter", "NSObject")
                                   .pointerVariable("total")
                                   .pointerVariable("other")
                                   .method<add>("add:")
                                   .method<scaled>("scale:by:negative:")
                                   .method<autoreleaseOnce>("autoreleaseOnce")
                                   .method<fail>("fail")
                                   .protocol("NoSuchProtocol")
                                   .registered();
    return built;
}

Retained<Counter> newCounter() {
    return adopt(sendMessage<Counter*>(counterClass(), selector<"new">()));
}

UInteger countOf(const Object* object) {
    return InstanceMethod<"NSObject", "retainCount", UInteger()>::send(object);
}

TEST(ClassBuilder, MakesAClassThatTheRuntimeFindsByName) {
    const Class built = counterClass();
    EXPECT_EQ(built, requireClass("KovraTestCounter"));
    EXPECT_EQ(class_getSuperclass(built), requireClass("NSObject"));
}

TEST(ClassBuilder, AdoptsTheProtocolsThatExist) {
    Protocol* copying = objc_getProtocol("NSCopying");
    ASSERT_NE(copying, nullptr);
    const Class built = ClassBuilder("KovraTestCopying", "NSObject")
                            .protocol("NSCopying")
                            .protocol("NoSuchProtocol")
                            .registered();
    EXPECT_TRUE(class_conformsToProtocol(built, copying));
    EXPECT_FALSE(class_conformsToProtocol(counterClass(), copying));
}

TEST(ClassBuilder, ItsMethodsCallTheFunctions) {
    const auto counter = newCounter();
    int total = 5;
    setPointerVariable(counter.get(), "total", &total);
    EXPECT_EQ(sendMessage<int>(counter.get(), selector<"add:">(), 3), 8);
    EXPECT_EQ(total, 8);
    const SEL scale = selector<"scale:by:negative:">();
    EXPECT_EQ((sendMessage<double, double, const char*, Bool>(counter.get(), scale, 1.5, "abcd",
                                                              toBool(true))),
              -6.0);
}

TEST(ClassBuilder, TheEncodingOfAMethodFollowsFromItsSignature) {
    const Method scale =
        class_getInstanceMethod(counterClass(), sel_registerName("scale:by:negative:"));
    // The runtime's boolean is a bool or a byte.
    const std::string truth = std::is_same_v<Bool, bool> ? "B" : "C";
    EXPECT_EQ(method_getTypeEncoding(scale), "d@:dr*" + truth);
    EXPECT_EQ(method_getNumberOfArguments(scale), 5U);
}

TEST(ClassBuilder, APointerVariableIsNullAtFirstAndEachObjectHasItsOwn) {
    const auto first = newCounter();
    const auto second = newCounter();
    EXPECT_EQ(pointerVariable(first.get(), "total"), nullptr);
    int value = 0;
    int other = 0;
    setPointerVariable(first.get(), "total", &value);
    setPointerVariable(first.get(), "other", &other);
    EXPECT_EQ(pointerVariable(first.get(), "total"), &value);
    EXPECT_EQ(pointerVariable(first.get(), "other"), &other);
    EXPECT_EQ(pointerVariable(second.get(), "total"), nullptr);
}

TEST(ClassBuilder, EachCallOfAMethodHasItsOwnAutoreleasePool) {
    const auto counter = newCounter();
    const auto object = newCounter();
    bystander = object.get();
    sendMessage<void>(counter.get(), selector<"autoreleaseOnce">());
    EXPECT_EQ(countOf(bystander), 1U);
}

TEST(ClassBuilderDeathTest, NoExceptionLeavesAMethod) {
    EXPECT_EXIT(sendMessage<void>(newCounter().get(), selector<"fail">()),
                ::testing::KilledBySignal(SIGABRT), "");
}

TEST(ClassBuilderDeathTest, ANameThatIsInUseAborts) {
    EXPECT_EXIT(ClassBuilder("NSObject", "NSObject"), ::testing::KilledBySignal(SIGABRT),
                "NSObject exists already");
    EXPECT_EXIT(ClassBuilder("KovraTestOrphan", "NoSuchClass"), ::testing::KilledBySignal(SIGABRT),
                "NoSuchClass is missing");
}

Object* nothing(Object*) {
    return nullptr;
}

TEST(ReplaceClassMethod, ReplacesAMethodByAFunction) {
    using TheNull = ClassMethod<"NSNull", "null", Object*()>;
    EXPECT_NE(TheNull::send(), nullptr);
    replaceClassMethod<nothing>("NSNull", "null");
    EXPECT_EQ(TheNull::send(), nullptr);
}

} // namespace
} // namespace platform::objc
