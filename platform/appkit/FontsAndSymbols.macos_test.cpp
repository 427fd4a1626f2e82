// The Mac's fonts and symbols, on stand-ins for the methods that GNUstep lacks.

#include "platform/appkit/FontsAndSymbols.hpp"

#include "platform/appkit/CoreGraphics.macos.hpp"
#include "platform/appkit/NSImage.hpp"
#include "platform/appkit/NSImageSymbolConfiguration.hpp"
#include "platform/appkit/testing/Pixels.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/objc/testing/AddMethod.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <utility>

namespace platform::appkit {
namespace {

using declarative::FontWeight;
using declarative::Symbol;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr NSSize known{16, 10};

using SizeAndWeight = std::pair<CGFloat, CGFloat>;

/// A symbol configuration, and how it was made.
struct Made {
    objc::Retained<NSImageSymbolConfiguration> object;
    std::string description;
};

/// The calls to the stand-ins.
struct Asked {
    std::vector<SizeAndWeight> fonts{};
    std::vector<SizeAndWeight> configurations{};
    std::vector<Made> made{};
    std::string appliedToImage{};
    std::vector<std::string> layers{};
    // The results, retained: each call has an autorelease pool of its own.
    objc::Retained<NSImage> image{};
    objc::Retained<NSFont> font{};
};

Asked asked;

NSFont* systemFontOfSize(NSObject*, CGFloat size, CGFloat weight) {
    asked.fonts.emplace_back(size, weight);
    asked.font = objc::retain(NSFont::fontWithName(foundation::toNSString("Inter-Regular"), size));
    return asked.font.get();
}

NSImage* imageOfSymbol(NSObject*, NSString* name, NSString*) {
    if (foundation::toString(name) != "known") {
        return nullptr;
    }
    asked.image = objc::adopt(InstanceMethod<"NSImage", "initWithSize:", NSImage*(NSSize)>::send(
        NSImage::alloc(), known));
    return asked.image.get();
}

NSImageSymbolConfiguration* made(const std::string& description) {
    asked.made.push_back(
        {objc::adopt(objc::sendMessage<NSImageSymbolConfiguration*>(
             objc::requireClass("NSImageSymbolConfiguration"), objc::selector<"new">())),
         description});
    return asked.made.back().object.get();
}

std::string descriptionOf(const NSImageSymbolConfiguration* configuration) {
    const auto found = std::ranges::find_if(
        asked.made, [=](const Made& one) { return one.object.get() == configuration; });
    return found == asked.made.end() ? "none" : found->description;
}

NSImageSymbolConfiguration* configurationOf(NSObject*, CGFloat size, CGFloat weight) {
    asked.configurations.emplace_back(size, weight);
    return made("sized");
}

NSImageSymbolConfiguration* preferringMonochrome(NSObject*) {
    return made("monochrome");
}

NSImageSymbolConfiguration* applying(NSImageSymbolConfiguration* first,
                                     NSImageSymbolConfiguration* second) {
    return made(descriptionOf(first) + " and " + descriptionOf(second));
}

NSImage* configured(NSImage* image, NSImageSymbolConfiguration* configuration) {
    asked.appliedToImage = descriptionOf(configuration);
    return image;
}

constexpr CGFloat capitals = 8;

CGFloat capHeight(NSFont*) {
    return capitals;
}

void addStandIns() {
    static const bool once = [] {
        using objc::testing::addClassMethod;
        using objc::testing::addMethod;
        objc::ClassBuilder("NSImageSymbolConfiguration", "NSObject").registered();
        addClassMethod<configurationOf>("NSImageSymbolConfiguration",
                                        "configurationWithPointSize:weight:");
        addClassMethod<preferringMonochrome>("NSImageSymbolConfiguration",
                                             "configurationPreferringMonochrome");
        addMethod<applying>("NSImageSymbolConfiguration", "configurationByApplyingConfiguration:");
        addClassMethod<imageOfSymbol>("NSImage",
                                      "imageWithSystemSymbolName:accessibilityDescription:");
        addMethod<configured>("NSImage", "imageWithSymbolConfiguration:");
        addClassMethod<systemFontOfSize>("NSFont", "systemFontOfSize:weight:");
        addMethod<capHeight>("NSFont", "capHeight");
        return true;
    }();
    ASSERT_TRUE(once);
    asked = {};
}

class OnAMac : public ::testing::Test {
  protected:
    OnAMac() { addStandIns(); }
};

using SystemFontTest = OnAMac;
using SystemSymbolTest = OnAMac;

Symbol symbol(const char* name) {
    return {name, {.size = 12, .weight = FontWeight::semibold}, testing::red, ""};
}

TEST_F(SystemFontTest, PassesTheNumberOfEachWeight) {
    for (const auto& [weight, number] :
         {std::pair{FontWeight::light, -0.4}, std::pair{FontWeight::regular, 0.0},
          std::pair{FontWeight::medium, 0.23}, std::pair{FontWeight::semibold, 0.3}}) {
        asked = {};
        EXPECT_NE(systemFont({.size = 15, .weight = weight}), nullptr);
        EXPECT_THAT(asked.fonts, ElementsAre(Pair(15, number)));
    }
}

TEST_F(SystemSymbolTest, IsCentredOnHalfTheCapHeight) {
    const auto metrics = systemSymbolMetrics(symbol("known"));
    EXPECT_EQ(metrics.size.width, known.width);
    EXPECT_EQ(metrics.size.height, known.height);
    EXPECT_EQ(metrics.firstBaseline, known.height / 2 + capitals / 2);
    EXPECT_THAT(asked.configurations, ElementsAre(Pair(12, 0.3)));
    EXPECT_EQ(asked.appliedToImage, "sized and monochrome");
    EXPECT_THAT(asked.fonts, ElementsAre(Pair(12, 0.3)));
}

TEST_F(SystemSymbolTest, IsFilledWithItsColourInATransparencyLayer) {
    const declarative::paint::DrawSymbol command{symbol("known"), {4, 4, 16, 10}, 14};
    const std::string png = testing::painted({command});
    ASSERT_GE(asked.layers.size(), 4U);
    asked.layers.resize(4); // a view may be drawn more than once
    EXPECT_THAT(asked.layers, ElementsAre("begin", "blend 18", "fill", "end"));
    EXPECT_NEAR(testing::greenAt(png, 10, 8), 0, 0.01);
    EXPECT_NEAR(testing::greenAt(png, 10, 2), 1, 0.01);
    EXPECT_NEAR(testing::greenAt(png, 2, 8), 1, 0.01);
}

TEST_F(SystemSymbolTest, OfAnUnknownNameHasNoSizeAndDrawsNothing) {
    EXPECT_EQ(systemSymbolMetrics(symbol("arrow.up.right")), declarative::TextMetrics());
    const declarative::paint::DrawSymbol command{symbol("arrow.up.right"), {4, 4, 16, 10}, 14};
    EXPECT_EQ(testing::painted({command}), testing::painted({}));
    EXPECT_THAT(asked.layers, IsEmpty());
}

} // namespace
} // namespace platform::appkit

void CGContextBeginTransparencyLayer(CGContextRef, CFDictionaryRef) {
    platform::appkit::asked.layers.emplace_back("begin");
}

void CGContextEndTransparencyLayer(CGContextRef) {
    platform::appkit::asked.layers.emplace_back("end");
}

void CGContextFillRect(CGContextRef, CGRect rect) {
    using namespace platform::appkit;
    asked.layers.emplace_back("fill");
    ClassMethod<"NSBezierPath", "fillRect:", void(NSRect)>::send(
        {{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}});
}

void CGContextSetBlendMode(CGContextRef, CGBlendMode mode) {
    platform::appkit::asked.layers.push_back("blend " + std::to_string(mode));
}
