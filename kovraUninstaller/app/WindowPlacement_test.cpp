#include "kovraUninstaller/app/WindowPlacement.hpp"

#include <gtest/gtest.h>

namespace kovra {
namespace {

using platform::declarative::Point;
using platform::declarative::Rect;
using platform::declarative::Size;

constexpr Rect besideDock{70, 20, 1370, 855};
constexpr Size frame{480, 478};

TEST(WindowPlacement, CentresTheContentAtLaunch) {
    EXPECT_EQ(launchOrigin(besideDock, {480, 450}), (Point{515, 222.5}));
}

TEST(WindowPlacement, LeavesFortyPointsToTheLeftOfTheWindowBesideADialog) {
    EXPECT_EQ(besideDialogsOrigin(besideDock, frame, 1), (Point{110, 208.5}));
    EXPECT_EQ(besideDialogsOrigin(besideDock, frame, 2), (Point{150, 208.5}));
}

TEST(WindowPlacement, CentresTheWholeFrameAfterADialog) {
    EXPECT_EQ(centredOrigin(besideDock, frame), (Point{515, 208.5}));
}

} // namespace
} // namespace kovra
