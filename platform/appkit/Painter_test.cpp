#include "platform/appkit/FontsAndSymbols.hpp"
#include "platform/appkit/Painter.hpp"
#include "platform/appkit/testing/Pixels.hpp"
#include "platform/testing/TemporaryFolder.hpp"

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

TEST(Painter, StrokesALineInItsWidth) {
    declarative::Path across;
    across.moveTo({0, 12});
    across.lineTo({24, 12});
    const std::string png = painted({paint::StrokePath{across, red, 6}});
    EXPECT_NEAR(greenAt(png, 12, 8), 1, 0.01);
    EXPECT_NEAR(greenAt(png, 12, 9), 0, 0.01);
    EXPECT_NEAR(greenAt(png, 12, 14), 0, 0.01);
    EXPECT_NEAR(greenAt(png, 12, 15), 1, 0.01);
}

/// A picture of eight by four pixels, its left half red and its right half white, as it is drawn in
/// a square.
std::string paintedPicture(double opacity) {
    const platform::testing::TemporaryFolder folder;
    const auto none = [](const std::string&) { return std::nullopt; };
    const std::string file =
        folder.file("picture.png", painted({8, 4}, {paint::FillRect{{0, 0, 4, 4}, red}}, none));
    return painted({all.width, all.height}, {paint::DrawImage{"picture", all, opacity}},
                   [&file](const std::string& name) {
                       return name == "picture" ? std::optional(file) : std::nullopt;
                   });
}

TEST(Painter, ScalesAnImageToFillItsRectangle) {
    const std::string png = paintedPicture(1);
    for (const Integer y : {1, 12, 22}) {
        EXPECT_NEAR(greenAt(png, 2, y), 0, 0.02) << y;
        EXPECT_NEAR(greenAt(png, 21, y), 1, 0.02) << y;
    }
}

TEST(Painter, InterpolatesTheEnlargedImage) {
    const std::string png = paintedPicture(1);
    EXPECT_GT(greenAt(png, 11, 12), 0.1);
    EXPECT_LT(greenAt(png, 12, 12), 0.9);
}

TEST(Painter, DrawsAnImageWithItsOpacity) {
    EXPECT_NEAR(greenAt(paintedPicture(0.5), 2, 12), 0.5, 0.02);
}

TEST(Painter, DrawsNothingForAMissingImage) {
    EXPECT_EQ(painted({paint::DrawImage{"missing", all, 1}}), painted({}));
}

TEST(Painter, DrawsASymbolAndNothingForAnUnknownOne) {
    const auto drawn = [](const char* name) {
        const declarative::Symbol symbol{name, {.size = 12}, red, ""};
        const auto [size, baseline] = systemSymbolMetrics(symbol);
        return painted({paint::DrawSymbol{symbol, {4, 4, size.width, size.height}, 4 + baseline}});
    };
    EXPECT_NE(drawn("arrow.up.right"), painted({}));
    EXPECT_EQ(drawn("no.such.symbol"), painted({}));
}

TEST(Painter, AppliesAllNestedClips) {
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
