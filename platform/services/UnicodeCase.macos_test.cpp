#include "platform/services/TextCase.hpp"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(LowercasedByFoundation, FollowsUnicode) {
    EXPECT_EQ(lowercased("\u212AOVRA ÄÖÜ ΑΒΓ КОВРА 日本語 🎉"), "kovra äöü αβγ ковра 日本語 🎉");
}

TEST(LowercasedByFoundation, GivesBytesThatAreNoTextBackAsTheyAre) {
    EXPECT_EQ(lowercased("KOVRA\xFF"), "KOVRA\xFF");
}

} // namespace
} // namespace platform
