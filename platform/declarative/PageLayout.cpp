#include "platform/declarative/PageLayout.hpp"

#include "platform/declarative/ElementContent.hpp"
#include "platform/declarative/Layout.hpp"

#include <algorithm>
#include <ranges>
#include <utility>

namespace platform::declarative {

namespace {

// The focus ring is just outside the button, in the blue of the system's focus rings.
constexpr Color focusColor{0.0, 0.40, 0.96, 0.55};
constexpr double focusWidth = 3;
constexpr double focusDistance = 3.5;

// What an element inherits from its ancestors.
struct Surroundings {
    Point origin;
    Rect visible;
    double opacity = 1;
    bool described = false; // an ancestor is spoken in its place
};

class Emitter {
  public:
    Emitter(PageLayout& page, const Interaction& interaction)
        : page_(page), interaction_(interaction) {}

    void emit(const LayoutBox& box, const Surroundings& around) {
        std::visit([&](const auto& content) { emitContent(content, box, around); },
                   box.element.content().value);
    }

    // Focus rings are on top of everything.
    void emitFocusRings() { std::ranges::move(rings_, std::back_inserter(page_.paint.commands)); }

  private:
    static Rect frameOf(const LayoutBox& box, const Surroundings& around) {
        return {around.origin.x, around.origin.y, box.size.width, box.size.height};
    }

    void emitChildren(const LayoutBox& box, const Surroundings& around) {
        for (const LayoutBox& child : box.children) {
            Surroundings inner = around;
            inner.origin = around.origin + child.origin;
            emit(child, inner);
        }
    }

    void describe(AccessibilityDescription description, const LayoutBox& box,
                  const Surroundings& around, std::string buttonID = {}) {
        if (!around.described) {
            page_.accessibility.push_back(
                {std::move(description), frameOf(box, around), std::move(buttonID)});
        }
    }

    void paint(PaintCommand command) { page_.paint.commands.push_back(std::move(command)); }

    // Stacks, layers, frames, paddings and backgrounds only arrange.
    template <typename Arrangement>
    void emitContent(const Arrangement& /*content*/, const LayoutBox& box,
                     const Surroundings& around) {
        emitChildren(box, around);
    }

    void emitContent(const Text& text, const LayoutBox& box, const Surroundings& around) {
        const Rect rect = frameOf(box, around);
        Rect wrapRect = rect;
        if (box.wrapWidth) {
            const HorizontalAlignment horizontal = text.alignment;
            wrapRect.x +=
                alignedOrigin(box.size, {*box.wrapWidth, 0}, {.horizontal = horizontal}).x;
            wrapRect.width = *box.wrapWidth;
        }
        Text painted = text;
        painted.color = text.color.withOpacity(around.opacity);
        if (painted.underline) {
            painted.underline = painted.underline->withOpacity(around.opacity);
        }
        paint(paint::DrawText{std::move(painted), rect, wrapRect, rect.y + box.firstBaseline});
        describe({AccessibilityRole::staticText, text.string}, box, around);
    }

    void emitContent(const Symbol& symbol, const LayoutBox& box, const Surroundings& around) {
        const Rect rect = frameOf(box, around);
        Symbol painted = symbol;
        painted.color = symbol.color.withOpacity(around.opacity);
        paint(paint::DrawSymbol{std::move(painted), rect, rect.y + box.firstBaseline});
        if (!symbol.accessibilityLabel.empty()) {
            describe({AccessibilityRole::image, symbol.accessibilityLabel}, box, around);
        }
    }

    void emitContent(const content::Rectangle& rectangle, const LayoutBox& box,
                     const Surroundings& around) {
        const Rect rect = frameOf(box, around);
        if (!rect.isEmpty()) {
            paint(paint::FillRect{rect, rectangle.fill.withOpacity(around.opacity)});
        }
    }

    void emitContent(const content::Image& image, const LayoutBox& box,
                     const Surroundings& around) {
        paint(paint::DrawImage{image.name, frameOf(box, around), around.opacity});
        if (!image.accessibilityLabel.empty()) {
            describe({AccessibilityRole::image, image.accessibilityLabel}, box, around);
        }
    }

    void emitContent(const content::Clip& clip, const LayoutBox& box, const Surroundings& around) {
        const Rect rect = frameOf(box, around);
        Surroundings inner = around;
        inner.visible = around.visible.intersection(rect);
        paint(paint::PushClip{clip.outline.pathIn(rect)});
        emitChildren(box, inner);
        paint(paint::PopClip{});
    }

    void emitContent(const content::Button& button, const LayoutBox& box,
                     const Surroundings& around) {
        const ButtonSpec& spec = button.spec;
        const Rect rect = frameOf(box, around);
        page_.hitAreas.push_back({around.visible.intersection(rect), spec});
        describe({AccessibilityRole::button, spec.accessibilityTitle}, box, around, spec.id);
        Surroundings inner = around;
        inner.described = true;
        if (interaction_.pressed == spec.id) {
            inner.opacity *= pressedOpacity;
        }
        emitChildren(box, inner);
        if (interaction_.focused == spec.id) {
            Outline ring = spec.focusRing;
            ring.cornerRadius += focusDistance;
            rings_.emplace_back(paint::StrokePath{ring.pathIn(rect.outsetBy(focusDistance)),
                                                  focusColor, focusWidth});
        }
    }

    void emitContent(const content::Described& described, const LayoutBox& box,
                     const Surroundings& around) {
        describe(described.description, box, around);
        Surroundings inner = around;
        inner.described = true;
        emitChildren(box, inner);
    }

    void emitContent(const content::Animating& animating, const LayoutBox& box,
                     const Surroundings& around) {
        page_.animated.push_back(animating.target);
        emitChildren(box, around);
    }

    PageLayout& page_;
    const Interaction& interaction_;
    std::vector<PaintCommand> rings_;
};

} // namespace

PageLayout layOut(const Element& page, Size size, const Measurer& measurer,
                  const Interaction& interaction) {
    PageLayout result;
    result.paint.size = size;
    const LayoutBox box = arrange(page, {size.width, size.height}, measurer);
    const Surroundings around{.origin = alignedOrigin(size, box.size, {}),
                              .visible = {0, 0, size.width, size.height}};
    Emitter emitter{result, interaction};
    emitter.emit(box, around);
    emitter.emitFocusRings();
    return result;
}

const HitArea* hitAt(std::span<const HitArea> areas, Point point) {
    for (const HitArea& area : std::views::reverse(areas)) {
        if (area.rect.contains(point)) {
            return &area;
        }
    }
    return nullptr;
}

const HitArea* PageLayout::buttonWithID(std::string_view id) const {
    const auto found =
        std::ranges::find_if(hitAreas, [id](const HitArea& area) { return area.button.id == id; });
    return found == hitAreas.end() ? nullptr : &*found;
}

std::vector<std::string> PageLayout::focusOrder() const {
    std::vector<std::string> order;
    order.reserve(hitAreas.size());
    for (const HitArea& area : hitAreas) {
        order.push_back(area.button.id);
    }
    return order;
}

} // namespace platform::declarative
