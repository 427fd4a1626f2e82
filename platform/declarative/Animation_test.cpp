#include "platform/declarative/Animation.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace platform::declarative {
namespace {

constexpr Spring spring{.response = 0.5};
constexpr EaseInOut fade{.duration = 0.12};

// The equation of motion, integrated numerically: a reference for the closed form.
Motion stepped(Motion state, double target, double elapsed) {
    const double w = 2 * std::numbers::pi / spring.response;
    const int steps = 200000;
    const double dt = elapsed / steps;
    const auto pull = [&](const Motion& at) {
        return -w * w * (at.value - target) - 2 * w * at.velocity;
    };
    for (int i = 0; i < steps; ++i) {
        const Motion middle{state.value + state.velocity * dt / 2,
                            state.velocity + pull(state) * dt / 2};
        state = {state.value + middle.velocity * dt, state.velocity + pull(middle) * dt};
    }
    return state;
}

TEST(Spring, FollowsTheCriticallyDampedFormulaAtFiveMoments) {
    for (const double t : {0.0, 0.1, 0.25, 0.5, 1.0}) {
        const double w = 2 * std::numbers::pi / 0.5;
        const double expected = 0.6 - 0.2 * (1 + w * t) * std::exp(-w * t);
        EXPECT_NEAR(motionAt(spring, {0.4, 0}, 0.6, t).value, expected, 1e-12) << t;
    }
}

TEST(Spring, HasTheValuesWorkedOutByHand) {
    EXPECT_NEAR(motionAt(spring, {0, 0}, 1, 0.1).value, 0.357740, 1e-6);
    EXPECT_NEAR(motionAt(spring, {0, 0}, 1, 0.25).value, 0.821026, 1e-6);
    EXPECT_NEAR(motionAt(spring, {0, 0}, 1, 0.5).value, 0.986399, 1e-6);
}

TEST(Spring, DoesNotOvershoot) {
    double previous = 0.4;
    for (int i = 1; i <= 200; ++i) {
        const double value = motionAt(spring, {0.4, 0}, 0.6, i * 0.01).value;
        EXPECT_GE(value, previous);
        EXPECT_LE(value, 0.6);
        previous = value;
    }
}

TEST(Spring, FollowsTheEquationOfMotionAtAnyVelocity) {
    for (const double velocity : {0.0, 3.0, -3.0}) {
        for (const double t : {0.05, 0.2, 0.6}) {
            const Motion exact = motionAt(spring, {0.2, velocity}, 1.0, t);
            const Motion reference = stepped({0.2, velocity}, 1.0, t);
            EXPECT_NEAR(exact.value, reference.value, 1e-6) << velocity << " " << t;
            EXPECT_NEAR(exact.velocity, reference.velocity, 1e-5) << velocity << " " << t;
        }
    }
}

TEST(Spring, IsNotSettledWhileItPassesItsTarget) {
    const Motion thrown{0, 30}; // so fast that it overshoots
    double crossing = 0;
    while (motionAt(spring, thrown, 1, crossing).value < 1) {
        crossing += 1e-6;
    }
    EXPECT_FALSE(isSettled(spring, thrown, 1, crossing));
}

TEST(Spring, SettlesOnceItIsCloseAndSlow) {
    EXPECT_FALSE(isSettled(spring, {0, 0}, 1, 0));
    EXPECT_FALSE(isSettled(spring, {0, 0}, 1, 0.5));
    EXPECT_TRUE(isSettled(spring, {0, 0}, 1, 1.5));
    EXPECT_TRUE(isSettled(spring, {1, 0}, 1, 0));
}

TEST(EaseInOut, FadesFromStartOverTheMiddleToTheEnd) {
    EXPECT_EQ(motionAt(fade, {0, 0}, 1, 0).value, 0);
    EXPECT_NEAR(motionAt(fade, {0, 0}, 1, 0.06).value, 0.5, 1e-9);
    EXPECT_EQ(motionAt(fade, {0, 0}, 1, 0.12).value, 1);
    EXPECT_EQ(motionAt(fade, {0, 0}, 1, 5).value, 1);
}

TEST(EaseInOut, StartsAndEndsSlowlyAndIsSymmetric) {
    const auto at = [](double t) { return motionAt(fade, {0, 0}, 1, t).value; };
    EXPECT_LT(at(0.012), 0.1 / 2);
    EXPECT_GT(at(0.108), 1 - 0.1 / 2);
    for (const double t : {0.01, 0.03, 0.05}) {
        EXPECT_NEAR(at(t) + at(0.12 - t), 1, 1e-9);
    }
}

TEST(EaseInOut, SettlesAfterItsDuration) {
    EXPECT_FALSE(isSettled(fade, {0, 0}, 1, 0.119));
    EXPECT_TRUE(isSettled(fade, {0, 0}, 1, 0.12));
}

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

TEST(Animator, DoesNotRestartForTheSameTarget) {
    Animator animator;
    animator.begin("x", 0);
    animator.retarget("x", 1, fade, 10);
    animator.retarget("x", 1, fade, 10.06);
    EXPECT_EQ(animator.valuesAt(10.13).at("x"), 1);
}

TEST(Animator, ReversesFromItsCurrentValue) {
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

TEST(Animator, StartsAtRestAfterItWasRemoved) {
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
    EXPECT_EQ(animator.valuesAt(0).at("y"), 1); // a motion in progress ends
    EXPECT_FALSE(animator.isMovingAt(0));
}

} // namespace
} // namespace platform::declarative
