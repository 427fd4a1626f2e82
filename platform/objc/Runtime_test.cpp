#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/Method.hpp"
#include "platform/objc/Retained.hpp"
#include "platform/objc/Runtime.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <thread>

namespace platform::objc {
namespace {

Object* newObject() {
    return ClassMethod<"NSObject", "new", Object*()>::send();
}

UInteger countOf(const Object* object) {
    return InstanceMethod<"NSObject", "retainCount", UInteger()>::send(object);
}

TEST(Messages, ToNullReturnZero) {
    EXPECT_EQ(countOf(nullptr), 0U);
    EXPECT_EQ((InstanceMethod<"NSObject", "description", Object*()>::send(nullptr)), nullptr);
    EXPECT_EQ((InstanceMethod<"NSNumber", "doubleValue", double()>::send(nullptr)), 0.0);
    InstanceMethod<"NSObject", "release", void()>::send(nullptr);
}

TEST(Messages, CarryArgumentsAndResultsOfEveryKind) {
    const AutoreleasePool pool;
    auto* number = ClassMethod<"NSNumber", "numberWithDouble:", Object*(double)>::send(-2.5);
    EXPECT_EQ((InstanceMethod<"NSNumber", "doubleValue", double()>::send(number)), -2.5);
    EXPECT_EQ((InstanceMethod<"NSNumber", "floatValue", float()>::send(number)), -2.5F);
    EXPECT_EQ((InstanceMethod<"NSNumber", "charValue", char()>::send(number)), -2);
    auto* same = ClassMethod<"NSNumber", "numberWithDouble:", Object*(double)>::send(-2.5);
    EXPECT_NE((InstanceMethod<"NSObject", "isEqual:", Bool(Object*)>::send(number, same)), NO);
}

TEST(Classes, AreKnownByNameFromAnyObject) {
    EXPECT_STREQ(classNameOf(adopt(newObject()).get()), "NSObject");
    EXPECT_STRCASEEQ(classNameOf(nullptr), "nil"); // each runtime in its own spelling
}

TEST(ClassesDeathTest, ThatAreMissingAbortWithTheirName) {
    EXPECT_EXIT(static_cast<void>(requireClass("NoSuchClass")), ::testing::KilledBySignal(SIGABRT),
                "NoSuchClass is missing");
}

TEST(Retained, ReleasesTheReferenceThatItTookOver) {
    Object* object = newObject();
    InstanceMethod<"NSObject", "retain", id()>::send(object);
    {
        const auto owner = adopt(object);
        EXPECT_EQ(countOf(object), 2U);
        EXPECT_EQ(owner.get(), object);
    }
    EXPECT_EQ(countOf(object), 1U);
    InstanceMethod<"NSObject", "release", void()>::send(object);
}

TEST(Retained, AddsAReferenceToAnObjectWithAnotherOwner) {
    const auto owner = adopt(newObject());
    {
        const auto second = retain(owner.get());
        EXPECT_EQ(countOf(owner.get()), 2U);
    }
    EXPECT_EQ(countOf(owner.get()), 1U);
}

TEST(Retained, CopiesAddAReferenceAndMovesDoNot) {
    auto first = adopt(newObject());
    Object* object = first.get();
    Retained<Object> second = first;
    EXPECT_EQ(countOf(object), 2U);
    const Retained<Object> third = std::move(second);
    EXPECT_EQ(countOf(object), 2U);
    EXPECT_FALSE(second); // NOLINT(bugprone-use-after-move): what is left is what is tested
    first = third;
    EXPECT_EQ(countOf(object), 2U);
    first = *&first;
    EXPECT_EQ(countOf(object), 2U);
    first = {};
    EXPECT_EQ(countOf(object), 1U);
}

TEST(Retained, PassesItsReferenceToTheAutoreleasePool) {
    const auto owner = adopt(newObject());
    {
        const AutoreleasePool pool;
        EXPECT_EQ(autoreleased(retain(owner.get())), owner.get());
        EXPECT_EQ(countOf(owner.get()), 2U);
    }
    EXPECT_EQ(countOf(owner.get()), 1U);
}

TEST(Retained, MayBeNull) {
    const Retained<Object> nothing;
    const Retained<Object> copy = nothing;
    EXPECT_FALSE(copy);
    EXPECT_FALSE(adopt<Object>(nullptr));
    EXPECT_FALSE(retain<Object>(nullptr));
}

TEST(AutoreleasePool, ReleasesItsObjectsAtItsEndTheInnerPoolFirst) {
    const auto owner = adopt(newObject());
    const AutoreleasePool outer;
    InstanceMethod<"NSObject", "retain", id()>::send(owner.get());
    InstanceMethod<"NSObject", "autorelease", id()>::send(owner.get());
    {
        const AutoreleasePool inner;
        InstanceMethod<"NSObject", "retain", id()>::send(owner.get());
        InstanceMethod<"NSObject", "autorelease", id()>::send(owner.get());
        EXPECT_EQ(countOf(owner.get()), 3U);
    }
    EXPECT_EQ(countOf(owner.get()), 2U);
}

TEST(AutoreleasePool, WorksOnAnyThread) {
    const auto owner = adopt(newObject());
    std::thread([&] {
        const AutoreleasePool pool;
        InstanceMethod<"NSObject", "retain", id()>::send(owner.get());
        InstanceMethod<"NSObject", "autorelease", id()>::send(owner.get());
    }).join();
    EXPECT_EQ(countOf(owner.get()), 1U);
}

TEST(BoundaryDeathTest, CallsTheHandlerInTheCatchClauseAndAborts) {
    const auto fail = [] {
        setFailureHandler([]() noexcept {
            try {
                throw;
            } catch (const std::runtime_error& error) {
                std::fprintf(stderr, "heard of %s\n", error.what());
            }
        });
        try {
            throw std::runtime_error("the fault");
        } catch (...) {
            failAtBoundary();
        }
    };
    EXPECT_EXIT(fail(), ::testing::KilledBySignal(SIGABRT), "heard of the fault");
}

TEST(BoundaryDeathTest, AbortsWithoutAHandlerToo) {
    EXPECT_EXIT(failAtBoundary(), ::testing::KilledBySignal(SIGABRT), "");
}

} // namespace
} // namespace platform::objc
