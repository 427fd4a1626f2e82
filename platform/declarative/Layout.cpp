#include "platform/declarative/Layout.hpp"

#include "platform/declarative/ElementContent.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace platform::declarative {

double alignedOffset(double container, double content, double fraction) {
    return (container - content) * fraction;
}

std::optional<double> lengthWithin(std::optional<double> offered, double before, double after) {
    return lengthLeft(offered, before + after);
}

std::optional<double> lengthLeft(std::optional<double> offered, double taken) {
    if (!offered) {
        return std::nullopt;
    }
    return std::max(0.0, *offered - taken);
}

std::optional<double> flexibleShare(std::optional<double> offered, double taken,
                                    std::size_t count) {
    const std::optional<double> rest = lengthLeft(offered, taken);
    if (!rest || count == 0) {
        return std::nullopt;
    }
    return *rest / static_cast<double>(count);
}

StackOffsets stackOffsets(std::span<const double> lengths, double spacing) {
    StackOffsets result{{}, 0};
    result.starts.reserve(lengths.size());
    for (const double length : lengths) {
        if (!result.starts.empty()) {
            result.length += spacing;
        }
        result.starts.push_back(result.length);
        result.length += length;
    }
    return result;
}

BaselineOffsets baselineOffsets(std::span<const double> heights,
                                std::span<const double> baselines) {
    BaselineOffsets result{{}, 0, 0};
    for (const double baseline : baselines) {
        result.baseline = std::max(result.baseline, baseline);
    }
    result.tops.reserve(baselines.size());
    for (std::size_t i = 0; i < baselines.size(); ++i) {
        const double top = result.baseline - baselines[i];
        result.tops.push_back(top);
        result.height = std::max(result.height, top + heights[i]);
    }
    return result;
}

namespace {

double fractionOf(HorizontalAlignment alignment) {
    switch (alignment) {
    case HorizontalAlignment::leading: return 0;
    case HorizontalAlignment::center: return 0.5;
    }
    return 0;
}

double fractionOf(VerticalAlignment alignment) {
    switch (alignment) {
    case VerticalAlignment::top:
    case VerticalAlignment::firstTextBaseline: return 0;
    case VerticalAlignment::center: return 0.5;
    }
    return 0;
}

} // namespace

Point alignedOrigin(Size container, Size content, Alignment alignment) {
    return {alignedOffset(container.width, content.width, fractionOf(alignment.horizontal)),
            alignedOffset(container.height, content.height, fractionOf(alignment.vertical))};
}

namespace {

// Whether the element takes all of what it is offered along `axis`: a stack offers it what the
// others leave.
bool isFlexible(const Element& element, Axis axis);

class FlexibilityAlong {
  public:
    explicit FlexibilityAlong(Axis axis) : axis_(axis) {}

    bool operator()(const content::Empty& /*content*/) const { return false; }

    bool operator()(const Text& /*content*/) const { return false; }

    bool operator()(const Symbol& /*content*/) const { return false; }

    bool operator()(const content::Rectangle& /*content*/) const { return true; }

    bool operator()(const content::Image& /*content*/) const { return true; }

    bool operator()(const content::Spacer& /*content*/) const { return true; }

    bool operator()(const content::Stack& stack) const {
        return std::ranges::any_of(stack.children, [&](const Element& child) {
            // A spacer takes space along the axis of its stack only.
            const bool spacer = std::holds_alternative<content::Spacer>(child.content().value);
            return spacer ? stack.axis == axis_ : isFlexible(child, axis_);
        });
    }

    bool operator()(const content::Layers& layers) const {
        return std::ranges::any_of(layers.children,
                                   [&](const Element& child) { return isFlexible(child, axis_); });
    }

    bool operator()(const content::Frame& frame) const {
        const bool fixed = axis_ == Axis::horizontal ? frame.size.width.has_value()
                                                     : frame.size.height.has_value();
        return !fixed && isFlexible(frame.child, axis_);
    }

    // All other kinds wrap one child and are as flexible as it is.
    template <typename Wrapper>
    bool operator()(const Wrapper& wrapper) const {
        return isFlexible(wrapper.child, axis_);
    }

  private:
    Axis axis_;
};

bool isFlexible(const Element& element, Axis axis) {
    return std::visit(FlexibilityAlong{axis}, element.content().value);
}

// Arranges the children of a stack: first those that are not flexible, in order, each offered what
// is left; then the flexible ones, which share the rest evenly.
class StackArranger {
  public:
    StackArranger(const content::Stack& stack, Proposal offered, const Measurer& measurer)
        : stack_(stack), measurer_(measurer), horizontal_(stack.axis == Axis::horizontal),
          offeredLength_(horizontal_ ? offered.width : offered.height),
          offeredBreadth_(horizontal_ ? offered.height : offered.width),
          boxes_(stack.children.size()) {}

    LayoutBox arranged(const Element& element) {
        arrangeChildren();
        std::vector<double> lengths;
        lengths.reserve(boxes_.size());
        std::ranges::transform(boxes_, std::back_inserter(lengths),
                               [this](const LayoutBox& box) { return lengthOf(box.size); });
        const StackOffsets along = stackOffsets(lengths, stack_.spacing);
        return onBaseline() ? inRow(element, along) : aligned(element, along);
    }

  private:
    [[nodiscard]] double lengthOf(Size size) const {
        return horizontal_ ? size.width : size.height;
    }

    [[nodiscard]] double breadthOf(Size size) const {
        return horizontal_ ? size.height : size.width;
    }

    [[nodiscard]] bool onBaseline() const {
        return horizontal_ && stack_.alignment.vertical == VerticalAlignment::firstTextBaseline;
    }

    [[nodiscard]] LayoutBox arrangeChild(const Element& child, std::optional<double> length) const {
        // Across the axis of the stack a spacer has size 0.
        const bool spacer = std::holds_alternative<content::Spacer>(child.content().value);
        const std::optional<double> breadth = spacer ? std::nullopt : offeredBreadth_;
        LayoutBox box = arrange(
            child, horizontal_ ? Proposal{length, breadth} : Proposal{breadth, length}, measurer_);
        if (spacer) {
            (horizontal_ ? box.size.height : box.size.width) = 0;
        }
        return box;
    }

    void arrangeChildren() {
        double taken =
            stack_.spacing * static_cast<double>(std::max<std::size_t>(boxes_.size(), 1) - 1);
        std::vector<std::size_t> flexible;
        for (std::size_t i = 0; i < boxes_.size(); ++i) {
            const Element& child = stack_.children[i];
            if (isFlexible(child, stack_.axis)) {
                flexible.push_back(i);
                continue;
            }
            boxes_[i] = arrangeChild(child, lengthLeft(offeredLength_, taken));
            taken += lengthOf(boxes_[i].size);
        }
        const std::optional<double> share = flexibleShare(offeredLength_, taken, flexible.size());
        for (const std::size_t i : flexible) {
            boxes_[i] = arrangeChild(stack_.children[i], share);
        }
    }

    LayoutBox aligned(const Element& element, const StackOffsets& along) {
        double breadth = 0;
        for (const LayoutBox& box : boxes_) {
            breadth = std::max(breadth, breadthOf(box.size));
        }
        LayoutBox result{element, sizeOf(along.length, breadth)};
        for (std::size_t i = 0; i < boxes_.size(); ++i) {
            const Point across = alignedOrigin(result.size, boxes_[i].size, stack_.alignment);
            const Point origin =
                horizontal_ ? Point{along.starts[i], across.y} : Point{across.x, along.starts[i]};
            if (i == 0) {
                result.firstBaseline = origin.y + boxes_[i].firstBaseline;
            }
            boxes_[i].origin = origin;
            result.children.push_back(std::move(boxes_[i]));
        }
        return result;
    }

    LayoutBox inRow(const Element& element, const StackOffsets& along) {
        std::vector<double> heights;
        std::vector<double> baselines;
        heights.reserve(boxes_.size());
        baselines.reserve(boxes_.size());
        for (const LayoutBox& box : boxes_) {
            heights.push_back(box.size.height);
            baselines.push_back(box.firstBaseline);
        }
        const BaselineOffsets across = baselineOffsets(heights, baselines);
        LayoutBox result{element, {along.length, across.height}};
        result.firstBaseline = across.baseline;
        for (std::size_t i = 0; i < boxes_.size(); ++i) {
            boxes_[i].origin = {along.starts[i], across.tops[i]};
            result.children.push_back(std::move(boxes_[i]));
        }
        return result;
    }

    [[nodiscard]] Size sizeOf(double length, double breadth) const {
        return horizontal_ ? Size{length, breadth} : Size{breadth, length};
    }

    const content::Stack& stack_;
    const Measurer& measurer_;
    bool horizontal_;
    std::optional<double> offeredLength_;
    std::optional<double> offeredBreadth_;
    std::vector<LayoutBox> boxes_;
};

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

    LayoutBox operator()(const content::Rectangle& /*content*/) const { return leaf(wholeOffer()); }

    LayoutBox operator()(const content::Image& /*content*/) const { return leaf(wholeOffer()); }

    LayoutBox operator()(const content::Spacer& spacer) const {
        return leaf({std::max(spacer.minimum, offered_.width.value_or(0)),
                     std::max(spacer.minimum, offered_.height.value_or(0))});
    }

    LayoutBox operator()(const content::Stack& stack) const {
        return StackArranger{stack, offered_, measurer_}.arranged(element_);
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

    LayoutBox operator()(const content::Background& background) const {
        LayoutBox result = wrapping(background.child);
        const Proposal own{result.size.width, result.size.height};
        result.children.insert(
            result.children.begin(),
            placed(arrange(background.behind, own, measurer_), result.size, Alignment{}));
        return result;
    }

    LayoutBox operator()(const content::Clip& clip) const { return wrapping(clip.child); }

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
