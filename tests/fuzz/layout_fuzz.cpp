// Pages of any shape: the layout does not crash, every clip that is opened is closed, and the
// layout of a page is the same each time.

#include "platform/declarative/PageLayout.hpp"
#include "platform/declarative/testing/GridMeasurer.hpp"
#include "tests/fuzz/FuzzTarget.hpp"

namespace {

using namespace platform::declarative;

// Makes a page from bytes; when they are used up, the rest is empty.
class PageReader {
  public:
    explicit PageReader(std::string_view bytes) : draws_(bytes) {}

    Element element(int depth = 0) {
        constexpr int deepest = 40;
        if (draws_.areUsedUp() || depth > deepest) {
            return {};
        }
        switch (draws_.next() % 12) {
        case 0: return text({.string = word(), .font = {length()}, .color = {}});
        case 1: return rectangle({});
        case 2: return spacer(length());
        case 3:
            return symbol({.name = "arrow.up.right",
                           .font = {length()},
                           .color = {},
                           .accessibilityLabel = {}});
        case 4: return verticalStack({.spacing = length()}, children(depth));
        case 5:
            return horizontalStack(
                {.alignment = VerticalAlignment::firstTextBaseline, .spacing = length()},
                children(depth));
        case 6: return layers({}, children(depth));
        case 7: return element(depth + 1).frame({.width = length(), .height = length()});
        case 8: return element(depth + 1).padding({length(), length(), length(), length()});
        case 9: return element(depth + 1).clipped({.cornerRadius = length()});
        case 10:
            return button({.id = word(), .action = {}, .accessibilityTitle = word()},
                          element(depth + 1));
        default: return element(depth + 1).background(element(depth + 1));
        }
    }

  private:
    double length() { return draws_.next() * 2.5; }

    std::string word() { return draws_.text(draws_.next() % 16); }

    std::vector<Element> children(int depth) {
        std::vector<Element> elements;
        for (unsigned i = draws_.next() % 5; i > 0; --i) {
            elements.push_back(element(depth + 1));
        }
        return elements;
    }

    Draws draws_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const Element page = PageReader(asText(bytes, size)).element();
    const testing::GridMeasurer measurer;
    const PageLayout layout = layOut(page, {480, 450}, measurer);
    int open = 0;
    for (const PaintCommand& command : layout.paint.commands) {
        open += std::holds_alternative<paint::PushClip>(command) ? 1 : 0;
        open -= std::holds_alternative<paint::PopClip>(command) ? 1 : 0;
        require(open >= 0, "no clip is closed before it is opened");
    }
    require(open == 0, "every clip is closed");
    require(layOut(page, {480, 450}, measurer).paint == layout.paint,
            "the layout of a page is the same each time");
    return 0;
}
