#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSParagraphStyle.hpp"
#include "platform/appkit/TextLayout.hpp"

#include <gtest/gtest.h>

namespace platform::appkit {
namespace {

using declarative::FontWeight;
using declarative::HorizontalAlignment;
using declarative::Text;

Text textOf(const std::string& string, FontWeight weight = FontWeight::regular) {
    return {.string = string, .font = {.size = 20, .weight = weight}, .color = {}};
}

declarative::TextMetrics metricsOf(const Text& text, std::optional<double> width = std::nullopt) {
    return TextLayout(text, width).metrics();
}

TEST(TextLayout, OfAnEmptyTextHasOneLineOfNoWidth) {
    const auto nothing = metricsOf(textOf(""));
    const auto something = metricsOf(textOf("Text"));
    EXPECT_EQ(nothing.size.width, 0);
    EXPECT_GT(something.size.width, 0);
    EXPECT_LT(something.firstBaseline, something.size.height);
}

TEST(TextLayout, HasNoHorizontalMargins) {
    EXPECT_NEAR(metricsOf(textOf("nnnn")).size.width, 2 * metricsOf(textOf("nn")).size.width, 0.01);
}

TEST(TextLayout, IsWiderInABolderWeight) {
    double last = 0;
    for (const auto weight :
         {FontWeight::light, FontWeight::regular, FontWeight::medium, FontWeight::semibold}) {
        const double width = metricsOf(textOf("Uninstalling everything", weight)).size.width;
        EXPECT_GT(width, last);
        last = width;
    }
}

TEST(TextLayout, WrapsAtTheWidth) {
    const auto whole = metricsOf(textOf("one two three")).size;
    const auto broken = metricsOf(textOf("one two three"), whole.width * 0.7).size;
    EXPECT_NEAR(broken.height, 2 * whole.height, 0.01);
    EXPECT_LT(broken.width, whole.width);
    EXPECT_EQ(metricsOf(textOf("one two three"), whole.width).size.height, whole.height);
}

Integer alignmentOf(HorizontalAlignment alignment) {
    Text text = textOf("Text");
    text.alignment = alignment;
    auto* style = textAttributes(text)->objectForKey(NSParagraphStyleAttributeName);
    return static_cast<Integer>(
        InstanceMethod<"NSParagraphStyle", "alignment", int()>::send(style));
}

TEST(TextAttributes, HaveTheAlignmentOfTheText) {
    EXPECT_EQ(alignmentOf(HorizontalAlignment::leading), textAlignmentLeft);
    EXPECT_EQ(alignmentOf(HorizontalAlignment::center), textAlignmentCenter);
}

TEST(TextAttributes, HaveAnUnderlineOnlyIfTheTextDoes) {
    Text text = textOf("Text");
    EXPECT_EQ(textAttributes(text)->objectForKey(NSUnderlineStyleAttributeName), nullptr);
    EXPECT_EQ(textAttributes(text)->objectForKey(NSUnderlineColorAttributeName), nullptr);
    text.underline = declarative::Color{1, 0, 0, 1};
    EXPECT_NE(textAttributes(text)->objectForKey(NSUnderlineStyleAttributeName), nullptr);
    const auto* line = textAttributes(text)->objectForKey(NSUnderlineColorAttributeName);
    EXPECT_EQ((InstanceMethod<"NSColor", "redComponent", double()>::send(line)), 1);
}

} // namespace
} // namespace platform::appkit
