#include "platform/appkit/Painter.hpp"
#include "platform/appkit/testing/Pixels.hpp"

#include <gtest/gtest.h>

namespace platform::appkit {
namespace {

namespace paint = declarative::paint;

using testing::all;
using testing::greenAt;
using testing::painted;
using testing::red;

TEST(Painter, FillsAPathInsideAndNothingOutside) {
    declarative::Path triangle;
    triangle.moveTo({0, 0});
    triangle.lineTo({20, 0});
    triangle.lineTo({0, 20});
    triangle.close();
    const std::string png = painted({paint::FillPath{triangle, red}});
    EXPECT_NEAR(greenAt(png, 4, 4), 0, 0.01);
    EXPECT_NEAR(greenAt(png, 16, 16), 1, 0.01);
}

TEST(Painter, DrawsNothingForAPictureThatIsMissing) {
    EXPECT_EQ(painted({paint::DrawImage{"missing", all, 1}}), painted({}));
}

TEST(Painter, DrawsTheOutlineOfASymbolThatTheSystemDoesNotHaveAndNothingForAnUnknownOne) {
    const auto drawn = [](const char* name) {
        const declarative::Symbol symbol{name, {.size = 12}, red, ""};
        return painted({paint::DrawSymbol{symbol, all, 15}});
    };
    EXPECT_NE(drawn("arrow.up.right"), painted({}));
    EXPECT_EQ(drawn("no.such.symbol"), painted({}));
}

TEST(Painter, HoldsToAllClipsThatAreInForce) {
    const auto half = [](declarative::Rect rect) { return declarative::Outline{}.pathIn(rect); };
    const std::string png =
        painted({paint::PushClip{half({0, 0, 20, 10})}, paint::PushClip{half({0, 0, 10, 20})},
                 paint::FillRect{all, red}, paint::PopClip{}, paint::PopClip{}});
    EXPECT_NEAR(greenAt(png, 4, 4), 0, 0.01);
    EXPECT_NEAR(greenAt(png, 16, 4), 1, 0.01);
    EXPECT_NEAR(greenAt(png, 4, 16), 1, 0.01);
}

} // namespace
} // namespace platform::appkit
