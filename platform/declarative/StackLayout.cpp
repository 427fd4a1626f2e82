#include "platform/declarative/StackLayout.hpp"

#include "platform/declarative/AlignedOrigin.hpp"
#include "platform/declarative/BoxArithmetic.hpp"
#include "platform/declarative/Flexibility.hpp"

#include <algorithm>
#include <iterator>

namespace platform::declarative {

namespace {

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
        // Across the stack a spacer takes no room.
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

} // namespace

LayoutBox arrangeStack(const Element& element, const content::Stack& stack, Proposal offered,
                       const Measurer& measurer) {
    return StackArranger{stack, offered, measurer}.arranged(element);
}

} // namespace platform::declarative
