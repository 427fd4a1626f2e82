#include "platform/declarative/Animator.hpp"

#include <gtest/gtest.h>

namespace platform::declarative {
namespace {

constexpr EaseInOut fade{.duration = 0.12};
constexpr Spring spring{.response = 0.5, .dampingFraction = 1.0};

TEST(Animator, BeginsAtRest) {
    Animator animator;
    animator.begin("x", 0.4);
    EXPECT_EQ(animator.valuesAt(7).at("x"), 0.4);
    EXPECT_FALSE(animator.isMovingAt(7));
}

TEST(Animator, MovesWhenItsTargetChangesAndRestsWhenItIsThere) {
    Animator animator;
    animator.begin("x", 0);
    animator.retarget("x", 1, fade, 10);
    EXPECT_EQ(animator.valuesAt(10).at("x"), 0);
    EXPECT_NEAR(animator.valuesAt(10.06).at("x"), 0.5, 1e-6);
    EXPECT_TRUE(animator.isMovingAt(10.06));
    EXPECT_EQ(animator.valuesAt(10.13).at("x"), 1);
    EXPECT_FALSE(animator.isMovingAt(10.13));
}

TEST(Animator, DoesNotStartAgainForTheTargetThatItHas) {
    Animator animator;
    animator.begin("x", 0);
    animator.retarget("x", 1, fade, 10);
    animator.retarget("x", 1, fade, 10.06);
    EXPECT_EQ(animator.valuesAt(10.13).at("x"), 1);
}

TEST(Animator, TurnsRoundFromWhereItIs) {
    Animator animator;
    animator.begin("x", 0);
    animator.retarget("x", 1, fade, 10);
    animator.retarget("x", 0, fade, 10.06);
    EXPECT_NEAR(animator.valuesAt(10.06).at("x"), 0.5, 1e-6);
    EXPECT_NEAR(animator.valuesAt(10.12).at("x"), 0.25, 1e-6);
    EXPECT_EQ(animator.valuesAt(10.19).at("x"), 0);
}

TEST(Animator, CarriesASpringsVelocityOverToItsNextTarget) {
    Animator animator;
    animator.begin("x", 0);
    animator.retarget("x", 0.5, spring, 0);
    const double before = animator.valuesAt(0.099).at("x");
    const double at = animator.valuesAt(0.1).at("x");
    animator.retarget("x", 1, spring, 0.1);
    const double after = animator.valuesAt(0.101).at("x");
    EXPECT_GT(at - before, 0.001);
    EXPECT_NEAR(after - at, at - before, 0.0001);
}

TEST(Animator, StartsAfreshAfterItWasForgotten) {
    Animator animator;
    animator.begin("x", 0);
    animator.begin("y", 0);
    animator.retarget("x", 1, spring, 0);
    animator.keepOnly({"y"});
    EXPECT_FALSE(animator.valuesAt(0.1).contains("x"));
    EXPECT_TRUE(animator.valuesAt(0.1).contains("y"));
    animator.begin("x", 0.25);
    EXPECT_EQ(animator.valuesAt(0.1).at("x"), 0.25);
}

TEST(Animator, JumpsWhenMotionIsReduced) {
    Animator animator;
    animator.begin("x", 0);
    animator.begin("y", 0);
    animator.retarget("y", 1, spring, 0);
    animator.setPreference(MotionPreference::reduced);
    animator.retarget("x", 1, spring, 0);
    EXPECT_EQ(animator.valuesAt(0).at("x"), 1);
    EXPECT_EQ(animator.valuesAt(0).at("y"), 1); // what was on its way is there
    EXPECT_FALSE(animator.isMovingAt(0));
}

} // namespace
} // namespace platform::declarative
