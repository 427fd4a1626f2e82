#include "platform/declarative/LayoutBox.hpp"

#include "platform/declarative/AlignedOrigin.hpp"
#include "platform/declarative/BoxArithmetic.hpp"
#include "platform/declarative/ElementContent.hpp"
#include "platform/declarative/StackLayout.hpp"

#include <utility>

namespace platform::declarative {

namespace {

LayoutBox placed(LayoutBox box, Size container, Alignment alignment) {
    box.origin = alignedOrigin(container, box.size, alignment);
    return box;
}

class Arranger {
  public:
    Arranger(const Element& element, Proposal offered, const Measurer& measurer)
        : element_(element), offered_(offered), measurer_(measurer) {}

    LayoutBox operator()(const content::Empty& /*content*/) const { return leaf({}); }

    LayoutBox operator()(const Text& text) const {
        const TextMetrics metrics = measurer_.measureText(text, offered_.width);
        LayoutBox box = leaf(metrics.size);
        box.firstBaseline = metrics.firstBaseline;
        box.wrapWidth = offered_.width;
        return box;
    }

    LayoutBox operator()(const Symbol& symbol) const {
        const TextMetrics metrics = measurer_.measureSymbol(symbol);
        LayoutBox box = leaf(metrics.size);
        box.firstBaseline = metrics.firstBaseline;
        return box;
    }

    LayoutBox operator()(const content::Shape& /*content*/) const { return leaf(wholeOffer()); }

    LayoutBox operator()(const content::Image& /*content*/) const { return leaf(wholeOffer()); }

    LayoutBox operator()(const content::Spacer& spacer) const {
        return leaf({std::max(spacer.minimum, offered_.width.value_or(0)),
                     std::max(spacer.minimum, offered_.height.value_or(0))});
    }

    LayoutBox operator()(const content::Stack& stack) const {
        return arrangeStack(element_, stack, offered_, measurer_);
    }

    LayoutBox operator()(const content::Layers& layers) const {
        std::vector<LayoutBox> boxes;
        boxes.reserve(layers.children.size());
        Size size;
        for (const Element& child : layers.children) {
            boxes.push_back(arrange(child, offered_, measurer_));
            size.width = std::max(size.width, boxes.back().size.width);
            size.height = std::max(size.height, boxes.back().size.height);
        }
        LayoutBox result = leaf(size);
        for (LayoutBox& box : boxes) {
            result.children.push_back(placed(std::move(box), size, layers.alignment));
        }
        takeBaselineOfFirst(result);
        return result;
    }

    LayoutBox operator()(const content::Frame& frame) const {
        const Proposal inner{frame.size.width ? frame.size.width : offered_.width,
                             frame.size.height ? frame.size.height : offered_.height};
        LayoutBox child = arrange(frame.child, inner, measurer_);
        const Size size{frame.size.width.value_or(child.size.width),
                        frame.size.height.value_or(child.size.height)};
        return around(placed(std::move(child), size, frame.alignment), size);
    }

    LayoutBox operator()(const content::Padding& padding) const {
        const Insets& insets = padding.insets;
        LayoutBox child = arrange(padding.child,
                                  {lengthWithin(offered_.width, insets.left, insets.right),
                                   lengthWithin(offered_.height, insets.top, insets.bottom)},
                                  measurer_);
        const Size size{insets.left + child.size.width + insets.right,
                        insets.top + child.size.height + insets.bottom};
        child.origin = {insets.left, insets.top};
        return around(std::move(child), size);
    }

    LayoutBox operator()(const content::Decorated& decorated) const {
        LayoutBox result = wrapping(decorated.child);
        const Proposal own{result.size.width, result.size.height};
        LayoutBox decoration =
            placed(arrange(decorated.decoration, own, measurer_), result.size, decorated.alignment);
        const bool behind = decorated.place == content::Decorated::Place::behind;
        result.children.insert(behind ? result.children.begin() : result.children.end(),
                               std::move(decoration));
        return result;
    }

    LayoutBox operator()(const content::Clip& clip) const { return wrapping(clip.child); }

    LayoutBox operator()(const content::Opacity& opacity) const { return wrapping(opacity.child); }

    LayoutBox operator()(const content::Button& button) const { return wrapping(button.child); }

    LayoutBox operator()(const content::Described& described) const {
        return wrapping(described.child);
    }

    LayoutBox operator()(const content::Animating& animating) const {
        return wrapping(animating.child);
    }

  private:
    [[nodiscard]] LayoutBox leaf(Size size) const { return {element_, size}; }

    [[nodiscard]] Size wholeOffer() const {
        return {offered_.width.value_or(0), offered_.height.value_or(0)};
    }

    [[nodiscard]] LayoutBox around(LayoutBox child, Size size) const {
        LayoutBox result = leaf(size);
        result.children.push_back(std::move(child));
        takeBaselineOfFirst(result);
        return result;
    }

    [[nodiscard]] LayoutBox wrapping(const Element& child) const {
        LayoutBox box = arrange(child, offered_, measurer_);
        const Size size = box.size;
        return around(std::move(box), size);
    }

    static void takeBaselineOfFirst(LayoutBox& box) {
        if (!box.children.empty()) {
            const LayoutBox& first = box.children.front();
            box.firstBaseline = first.origin.y + first.firstBaseline;
        }
    }

    const Element& element_;
    Proposal offered_;
    const Measurer& measurer_;
};

} // namespace

LayoutBox arrange(const Element& element, Proposal offered, const Measurer& measurer) {
    return std::visit(Arranger{element, offered, measurer}, element.content().value);
}

} // namespace platform::declarative
